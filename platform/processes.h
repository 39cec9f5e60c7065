// Port: processes (source: CreateProcessA and its companions; process names through Windows Management
// Instrumentation).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/status.h"

namespace platform {

/// A process that was started: its two handles, to be closed by the caller. 0 is none.
struct StartedProcess {
  std::uintptr_t process = 0;
  std::uintptr_t thread = 0;

  bool operator==(const StartedProcess&) const = default;
};

/// How a program is asked to show its first window.
enum class ShowWindow { Hidden, Normal };

enum class WaitResult { Signalled, TimedOut, Failed };

class Processes {
 public:
  virtual ~Processes() = default;

  /// Starts `commandLine` (the system finds the program in it) in `workingFolder` ("" = the current one) with normal
  /// priority, inherited handles and the caller's environment. `started` is none after a failure.
  /// FileNotFound: no such program; BadProgramFormat: not a program; FolderNameInvalid: no such working folder.
  virtual Status start(const std::string& commandLine, const std::string& workingFolder, ShowWindow showWindow,
                       StartedProcess& started) = 0;

  /// Waits until the process waits for input or ends. Failed, at once, for programs without a window.
  virtual WaitResult waitForInputIdle(const StartedProcess& started, std::uint32_t milliseconds) = 0;

  /// Waits for the end of the process. Failed when it cannot be waited for.
  virtual WaitResult wait(const StartedProcess& started, std::uint32_t milliseconds) = 0;

  /// `exitCode` is 259 while the process runs, and stays as it was after a failure.
  virtual Status exitCode(const StartedProcess& started, std::int32_t& exitCode) = 0;

  /// Closes both handles and sets them to 0; 0 is ignored.
  virtual void close(StartedProcess& started) = 0;

  /// The file names of the running processes, such as "explorer.exe"; none after a failure, whose status is the
  /// component object model's result (its 32 bits). `askedThrough` says in any case by which way the machine was asked,
  /// for messages.
  virtual Status runningNames(std::vector<std::string>& names, std::string& askedThrough) = 0;
};

}  // namespace platform
