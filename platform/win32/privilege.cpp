#include "platform/win32/privilege.h"

#include "platform/win32/last_status.h"
#include "platform/win32/owner.h"

namespace win32 {

// A privilege that the account does not hold counts as adjusted and is told by the last error alone.
platform::Status EnablePrivilege(const char* privilege) {
  OwnedHandle token;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, token.receive())) {
    return LastStatus();
  }
  TOKEN_PRIVILEGES wanted = {};
  wanted.PrivilegeCount = 1;
  wanted.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
  if (!LookupPrivilegeValueA(nullptr, privilege, &wanted.Privileges[0].Luid)) return LastStatus();
  TOKEN_PRIVILEGES before = {};
  DWORD size = sizeof before;
  SetLastError(ERROR_SUCCESS);
  AdjustTokenPrivileges(token.get(), FALSE, &wanted, size, &before, &size);
  return LastStatus();
}

}  // namespace win32
