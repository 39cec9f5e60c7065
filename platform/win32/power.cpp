#include "platform/win32/power.h"

#include "platform/win32/last_status.h"
#include "platform/win32/privilege.h"

namespace win32 {

using platform::Status;

Status PowerAdapter::enableShutdownPrivilege() {
  return EnablePrivilege("SeShutdownPrivilege");
}

Status PowerAdapter::restartByForce() {
  return StatusOf(ExitWindowsEx(EWX_REBOOT | EWX_FORCE, 0));
}

}  // namespace win32
