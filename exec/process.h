// Starting programs and waiting for them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/component.h"
#include "base/services.h"
#include "exec/file_kinds.h"
#include "platform/owned.h"

namespace assistant {

/// True for the exit codes that mean success: 0, 3010 and 3011 (the last two ask for a restart).
constexpr bool IsSuccessCode(std::int32_t code) {
  return code == 0 || code == 3010 || code == 3011;
}

/// The exit code that logs and records tell of a program that could not be started. A program may end with it as well.
inline constexpr std::int32_t NotStarted = -1;

/// Starts a command line in a folder, waits for its end without limit while the windows stay alive, and returns its
/// exit code, or NotStarted (the log says so).
std::int32_t GoShell(const Services& services, const std::string& commandLine, const std::string& workingFolder,
                     platform::ShowWindow showWindow = platform::ShowWindow::Normal);

/// A command of the system that the program itself needs, run in a window that is never shown: where it asks a
/// question, nobody can answer.
struct SystemCommand {
  std::string commandLine;
  std::string shown;  ///< as the log tells it: the command line may hold a password
  int seconds;        ///< that it is waited for
};

/// Runs the command: its exit code or NotStarted, or nothing, with a warning, when it was still running at the limit.
/// It is left alone then.
std::optional<std::int32_t> RunSystemCommand(const Services& services, const SystemCommand& command);

/// How long commands are waited for.
inline constexpr int NetSeconds = 30;
inline constexpr int SchedulerSeconds = 5;

/// A command that runs a component's file.
struct ComponentCommand {
  std::string commandLine;
  std::string workingFolder;
  std::string extension;  ///< as it is written
};

/// Runs an executable or script component and judges its exit code: true when the installation is to be treated as
/// successful. Writes "Process Return" and "Message" of the component's record.
bool ExecuteInstall(const Services& services, const Component& component, const FileKind& kind,
                    const ComponentCommand& command);

/// Writes "Fail" and the message that names the exit code into the component's record.
void RecordComponentFailure(const Services& services, const Component& component, std::int32_t exitCode);

/// Empties "Process Return" and "Message" of the component's record, so that only the component itself can fill them.
void ResetComponentResult(const Services& services, const Component& component);

}  // namespace assistant
