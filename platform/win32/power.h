// Restarting this machine.
#pragma once

#include "platform/power.h"

namespace win32 {

class PowerAdapter final : public platform::Power {
 public:
  platform::Status enableShutdownPrivilege() override;
  platform::Status restartByForce() override;
};

}  // namespace win32
