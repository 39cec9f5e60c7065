#include "platform/win32/processes.h"

#include "platform/win32/windows_api.h"
#include "platform/win32/wmi.h"

namespace win32 {

using platform::StartedProcess;
using platform::Status;
using platform::WaitResult;
namespace status = platform::status;

namespace {

HANDLE processHandle(const StartedProcess& started) {
  return reinterpret_cast<HANDLE>(started.process);
}

WaitResult waitResult(DWORD result) {
  switch (result) {
    case WAIT_OBJECT_0:
      return WaitResult::Signalled;
    case WAIT_TIMEOUT:
      return WaitResult::TimedOut;
    default:
      return WaitResult::Failed;
  }
}

}  // namespace

Status Processes::start(const std::string& commandLine, const std::string& workingFolder, std::uint16_t showWindow,
                        StartedProcess& started) {
  started = {};
  std::string writable = commandLine;  // the system may write into it
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = showWindow;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessA(nullptr, writable.data(), nullptr, nullptr, TRUE, NORMAL_PRIORITY_CLASS, nullptr,
                      workingFolder.empty() ? nullptr : workingFolder.c_str(), &startup, &process)) {
    return GetLastError();
  }
  started.process = reinterpret_cast<std::uintptr_t>(process.hProcess);
  started.thread = reinterpret_cast<std::uintptr_t>(process.hThread);
  return status::Ok;
}

WaitResult Processes::waitForInputIdle(const StartedProcess& started, std::uint32_t milliseconds) {
  return waitResult(WaitForInputIdle(processHandle(started), milliseconds));
}

WaitResult Processes::wait(const StartedProcess& started, std::uint32_t milliseconds) {
  return waitResult(WaitForSingleObject(processHandle(started), milliseconds));
}

Status Processes::exitCode(const StartedProcess& started, std::int32_t& exitCode) {
  DWORD code = 0;
  if (!GetExitCodeProcess(processHandle(started), &code)) return GetLastError();
  exitCode = static_cast<std::int32_t>(code);
  return status::Ok;
}

void Processes::close(std::uintptr_t& handle) {
  if (handle != 0) CloseHandle(reinterpret_cast<HANDLE>(handle));
  handle = 0;
}

Status Processes::queryNames(const std::string& moniker, const std::string& query, std::vector<std::string>& names) {
  return queryManagementNames(moniker, query, names);
}

}  // namespace win32
