#include "platform/win32/power.h"

#include "platform/win32/windows_api.h"

namespace win32 {

using platform::Status;
namespace status = platform::status;

namespace {

// A privilege that the account does not hold counts as adjusted and is told by the last error alone.
Status enable(HANDLE token, const char* privilege) {
  TOKEN_PRIVILEGES wanted = {};
  wanted.PrivilegeCount = 1;
  wanted.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
  if (!LookupPrivilegeValueA(nullptr, privilege, &wanted.Privileges[0].Luid)) return GetLastError();
  TOKEN_PRIVILEGES before = {};
  DWORD size = sizeof before;
  SetLastError(ERROR_SUCCESS);
  AdjustTokenPrivileges(token, FALSE, &wanted, size, &before, &size);
  return GetLastError();
}

}  // namespace

Status Power::enableShutdownPrivilege() {
  HANDLE token = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token)) return GetLastError();
  Status outcome = enable(token, "SeShutdownPrivilege");
  CloseHandle(token);
  return outcome;
}

Status Power::exitWindows(std::uint32_t flags, std::uint32_t reason) {
  return ExitWindowsEx(flags, reason) ? status::Ok : GetLastError();
}

}  // namespace win32
