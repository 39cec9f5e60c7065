// Time on this machine.
#pragma once

#include <memory>

#include "platform/clock.h"

namespace win32 {

class SystemLibrary;

class Clock : public platform::Clock {
 public:
  Clock();
  ~Clock() override;

  platform::LocalTime now() override;
  std::uint32_t ticks() override;
  void sleep(std::uint32_t milliseconds) override;

 private:
  std::unique_ptr<SystemLibrary> multimedia_;
};

}  // namespace win32
