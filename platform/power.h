// Port: restarting the machine (source: ExitWindowsEx and the token functions of advapi32).
#pragma once

#include "platform/status.h"

namespace platform {

class Power {
 public:
  virtual ~Power() = default;

  /// Enables the shutdown privilege of the running process. CallNotImplemented where there are no privileges.
  virtual Status enableShutdownPrivilege() = 0;

  /// Asks the system to end all programs, whether they like it or not, and to start anew. On Ok the program has moments
  /// to live; without the privilege it is refused.
  virtual Status restartByForce() = 0;
};

}  // namespace platform
