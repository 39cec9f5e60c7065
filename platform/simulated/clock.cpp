#include "platform/simulated/clock.h"

#include <chrono>
#include <cstdio>
#include <exception>

#include "platform/simulated/text.h"

namespace simulated {
namespace {

constexpr std::int64_t DayLength = 86400000;

}  // namespace

platform::LocalTime Clock::now() {
  const std::chrono::sys_days day{std::chrono::days{moment() / DayLength}};
  const std::chrono::year_month_day date{day};
  const int rest = static_cast<int>(moment() % DayLength);
  platform::LocalTime time;
  time.year = static_cast<int>(date.year());
  time.month = static_cast<int>(static_cast<unsigned>(date.month()));
  time.day = static_cast<int>(static_cast<unsigned>(date.day()));
  time.hour = rest / 3600000;
  time.minute = rest / 60000 % 60;
  time.second = rest / 1000 % 60;
  time.millisecond = rest % 1000;
  return time;
}

std::uint32_t Clock::ticks() {
  moveTo(elapsed_ + 1);
  return static_cast<std::uint32_t>(elapsed_);
}

void Clock::sleep(std::uint32_t milliseconds) {
  moveTo(elapsed_ + milliseconds);
}

void Clock::setTime(const std::string& text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
  const int read = std::sscanf(text.c_str(), "%4d-%2d-%2d %2d:%2d:%2d.%3d", &year, &month, &day, &hour, &minute,
                               &second, &millisecond);
  const auto fits = [](int number, int below) { return number >= 0 && number < below; };
  const bool isTime = fits(hour, 24) && fits(minute, 60) && fits(second, 60) && fits(millisecond, 1000);
  const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                                         std::chrono::day{static_cast<unsigned>(day)}};
  if (read < 6 || !date.ok() || !isTime || year < 1970)
    Refuse("time '" + text + "': write it as 2006-03-05 14:03:27.481");
  const std::int64_t days = std::chrono::sys_days{date}.time_since_epoch().count();
  started_ = days * DayLength + ((hour * 60 + minute) * 60 + second) * 1000LL + millisecond;
  started_ -= static_cast<std::int64_t>(elapsed_);
}

std::string Clock::timeText() const {
  Clock copy;
  copy.started_ = started_;
  copy.elapsed_ = elapsed_;
  const platform::LocalTime t = copy.now();
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", t.year, t.month, t.day, t.hour, t.minute,
                t.second, t.millisecond);
  return text;
}

void Clock::at(std::uint64_t elapsed, std::function<void()> action) {
  if (elapsed <= elapsed_) return action();
  planned_.emplace(elapsed, std::move(action));
}

void Clock::restart(std::uint32_t millisecondsToStart) {
  planned_.clear();
  started_ += static_cast<std::int64_t>(elapsed_) + millisecondsToStart;
  elapsed_ = 0;
}

void Clock::moveTo(std::uint64_t elapsed) {
  while (!planned_.empty() && planned_.begin()->first <= elapsed) {
    elapsed_ = std::max(elapsed_, planned_.begin()->first);
    const std::function<void()> action = std::move(planned_.begin()->second);
    planned_.erase(planned_.begin());
    action();
  }
  elapsed_ = std::max(elapsed_, elapsed);
  if (!end_ || moment() < *end_ || std::uncaught_exceptions() > 0) return;
  end_.reset();
  throw TimeIsUp{};
}

}  // namespace simulated
