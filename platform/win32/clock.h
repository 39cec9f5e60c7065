// Time on this machine.
#pragma once

#include <memory>

#include "platform/clock.h"

namespace win32 {

class SystemLibrary;

class ClockAdapter final : public platform::Clock {
 public:
  ClockAdapter();
  ~ClockAdapter() override;

  platform::LocalTime now() override;
  std::uint32_t ticks() override;
  void sleep(std::uint32_t milliseconds) override;

 private:
  std::unique_ptr<SystemLibrary> multimedia_;
};

}  // namespace win32
