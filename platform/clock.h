// Port: time (source: GetLocalTime, timeGetTime, Sleep).
#pragma once

#include <cstdint>

namespace platform {

/// Local date and time; month and day count from 1.
struct LocalTime {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;

  virtual LocalTime now() = 0;
  /// Milliseconds since an arbitrary moment; wraps after 49 days.
  virtual std::uint32_t ticks() = 0;
  virtual void sleep(std::uint32_t milliseconds) = 0;
};

}  // namespace platform
