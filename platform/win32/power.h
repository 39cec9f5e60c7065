// Restarting this machine.
#pragma once

#include "platform/power.h"

namespace win32 {

class Power : public platform::Power {
 public:
  platform::Status enableShutdownPrivilege() override;
  platform::Status exitWindows(std::uint32_t flags, std::uint32_t reason) override;
};

}  // namespace win32
