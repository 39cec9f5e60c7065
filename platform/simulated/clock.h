// The machine's own time. It moves when somebody sleeps or waits, and costs nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "platform/clock.h"

namespace simulated {

/// The time that `Clock::endAfter` allowed is over. Not an std::exception, so that no error handler swallows it.
struct TimeIsUp {};

class Clock : public platform::Clock {
 public:
  platform::LocalTime now() override;
  /// Every look takes a millisecond, so that a loop that watches the time comes to an end.
  std::uint32_t ticks() override;
  void sleep(std::uint32_t milliseconds) override;

  /// "2006-03-05 14:03:27.481"; raises std::runtime_error for anything else.
  void setTime(const std::string& text);
  std::string timeText() const;

  /// Milliseconds since the machine started.
  std::uint64_t elapsed() const { return elapsed_; }
  /// Milliseconds from 1970 to now, local time.
  std::int64_t moment() const { return started_ + static_cast<std::int64_t>(elapsed_); }
  /// After so many milliseconds from now, whatever moves the time throws TimeIsUp, once.
  void endAfter(std::int64_t milliseconds) { end_ = moment() + milliseconds; }
  /// Does something when `elapsed` has been reached; at once when it has been already.
  void at(std::uint64_t elapsed, std::function<void()> action);
  /// Drops what was planned and begins a new count of elapsed time.
  void restart(std::uint32_t millisecondsToStart);

 private:
  void moveTo(std::uint64_t elapsed);

  std::int64_t started_ = 1141567407481;  ///< milliseconds from 1970 to 2006-03-05 14:03:27.481, local time
  std::uint64_t elapsed_ = 0;
  std::optional<std::int64_t> end_;
  std::multimap<std::uint64_t, std::function<void()>> planned_;
};

}  // namespace simulated
