#include "platform/win32/power.h"

#include "platform/win32/last_status.h"
#include "platform/win32/owner.h"

namespace win32 {

using platform::Status;

namespace {

// A privilege that the account does not hold counts as adjusted and is told by the last error alone.
Status EnablePrivilege(HANDLE token, const char* privilege) {
  TOKEN_PRIVILEGES wanted = {};
  wanted.PrivilegeCount = 1;
  wanted.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
  if (!LookupPrivilegeValueA(nullptr, privilege, &wanted.Privileges[0].Luid)) return LastStatus();
  TOKEN_PRIVILEGES before = {};
  DWORD size = sizeof before;
  SetLastError(ERROR_SUCCESS);
  AdjustTokenPrivileges(token, FALSE, &wanted, size, &before, &size);
  return LastStatus();
}

}  // namespace

Status PowerAdapter::enableShutdownPrivilege() {
  OwnedHandle token;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, token.receive())) {
    return LastStatus();
  }
  return EnablePrivilege(token.get(), "SeShutdownPrivilege");
}

Status PowerAdapter::restartByForce() {
  return StatusOf(ExitWindowsEx(EWX_REBOOT | EWX_FORCE, 0));
}

}  // namespace win32
