#include "platform/win32/processes.h"

#include "platform/win32/last_status.h"
#include "platform/win32/machine.h"
#include "platform/win32/owner.h"
#include "platform/win32/wmi.h"

namespace win32 {

using platform::StartedProcess;
using platform::Status;
using platform::WaitResult;

namespace {

// By which way the running processes are asked for: this computer's own management, named as another one's would be.
constexpr const char* Moniker = "winmgmts:{impersonationLevel=impersonate,(RemoteShutdown)}//";
constexpr DWORD AskedNameSize = 30;
constexpr const char* ProcessQuery = "select * from Win32_Process";

HANDLE ProcessHandle(const StartedProcess& started) {
  return reinterpret_cast<HANDLE>(started.process);
}

WaitResult PortResult(DWORD result) {
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

Status ProcessesAdapter::start(const std::string& commandLine, const std::string& workingFolder,
                               platform::ShowWindow showWindow, StartedProcess& started) {
  started = {};
  std::string writable = commandLine;  // the system may write into it
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = showWindow == platform::ShowWindow::Hidden ? SW_HIDE : SW_SHOWNORMAL;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessA(nullptr, writable.data(), nullptr, nullptr, TRUE, NORMAL_PRIORITY_CLASS, nullptr,
                      workingFolder.empty() ? nullptr : workingFolder.c_str(), &startup, &process)) {
    return LastStatus();
  }
  started.process = reinterpret_cast<std::uintptr_t>(process.hProcess);
  started.thread = reinterpret_cast<std::uintptr_t>(process.hThread);
  return Status::Ok;
}

WaitResult ProcessesAdapter::waitForInputIdle(const StartedProcess& started, std::uint32_t milliseconds) {
  return PortResult(WaitForInputIdle(ProcessHandle(started), milliseconds));
}

WaitResult ProcessesAdapter::wait(const StartedProcess& started, std::uint32_t milliseconds) {
  return PortResult(WaitForSingleObject(ProcessHandle(started), milliseconds));
}

Status ProcessesAdapter::exitCode(const StartedProcess& started, std::int32_t& code) {
  DWORD systemCode = 0;
  if (!GetExitCodeProcess(ProcessHandle(started), &systemCode)) return LastStatus();
  code = static_cast<std::int32_t>(systemCode);
  return Status::Ok;
}

void ProcessesAdapter::close(StartedProcess& started) {
  OwnedHandle process(reinterpret_cast<HANDLE>(started.process));
  OwnedHandle thread(reinterpret_cast<HANDLE>(started.thread));
  started = {};
}

Status ProcessesAdapter::runningNames(std::vector<std::string>& names, std::string& askedThrough) {
  askedThrough = Moniker + ComputerName(AskedNameSize);
  return QueryManagementNames(askedThrough, ProcessQuery, names);
}

}  // namespace win32
