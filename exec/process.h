// Starting programs and waiting for them.
#pragma once

#include <cstdint>
#include <string>

#include "base/run.h"
#include "platform/processes.h"

/// Starts a command line in a folder, waits for its end without limit while the windows stay alive, and returns its
/// exit code, or -1 when it could not be started (the log says so). `timeout` is accepted and not used; `showWindow` is
/// handed to the program; `loggedFlags` appear in the failure's log text only.
std::int32_t GoShell(Run& run, const std::string& commandLine, const std::string& workingFolder,
                     std::int32_t timeout = 5000, platform::ShowWindow showWindow = platform::ShowWindow::Normal,
                     std::int32_t loggedFlags = 128);

/// The wait behind GoShell: returns the exit code.
std::int32_t WaitForTermination(Run& run, const platform::StartedProcess& process);

namespace modMain {

/// Runs an executable or script component and judges its exit code: true when the installation is to be treated as
/// successful. `fileType` is the file's extension ("exe" and "vbs" are known; in other letters they are not); the
/// boolean is accepted and not used. Writes "Process Return" and "Message" of the component's record.
bool ExecuteInstall(Run& run, const std::string& commandLine, bool unused, const std::string& workingFolder,
                    const std::string& fileType);

}  // namespace modMain

/// True for the exit codes that mean success: 0, 3010 and 3011 (the last two ask for a restart).
constexpr bool IsSuccessCode(std::int32_t code) {
  return code == 0 || code == 3010 || code == 3011;
}

/// Writes "Fail" and the message that names the exit code into the component's record.
void RecordComponentFailure(Run& run, std::int32_t exitCode);

/// Empties "Process Return" and "Message" of the component's record, so that only the component itself can fill them.
void ResetComponentResult(Run& run);
