// Port: restarting the machine (source: ExitWindowsEx and the token functions of advapi32).
#pragma once

#include <cstdint>

#include "platform/status.h"

namespace platform {

class Power {
 public:
  virtual ~Power() = default;

  /// Enables the shutdown privilege of the running process.
  virtual Status enableShutdownPrivilege() = 0;

  /// Asks the system to end all programs and act on `flags` (6 = restart, forced). On Ok the program has moments to
  /// live.
  virtual Status exitWindows(std::uint32_t flags, std::uint32_t reason) = 0;
};

}  // namespace platform
