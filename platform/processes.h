// Port: processes (source: CreateProcessA and its companions; process names through Windows Management
// Instrumentation).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/status.h"

namespace platform {

/// A process that was started: its two handles, to be closed by the caller.
struct StartedProcess {
  std::uintptr_t process = 0;
  std::uintptr_t thread = 0;
};

enum class WaitResult { Signalled, TimedOut, Failed };

class Processes {
 public:
  virtual ~Processes() = default;

  /// Starts `commandLine` (the system finds the program in it) in `workingFolder` ("" = the current one) with normal
  /// priority, inherited handles, the caller's environment and the given show-window state (0 hidden, 1 normal).
  /// FileNotFound: no such program; BadProgramFormat: not a program; FolderNameInvalid: no such working folder.
  virtual Status start(const std::string& commandLine, const std::string& workingFolder, std::uint16_t showWindow,
                       StartedProcess& started) = 0;

  /// Waits until the process waits for input or ends. Failed, at once, for programs without a window.
  virtual WaitResult waitForInputIdle(const StartedProcess& started, std::uint32_t milliseconds) = 0;

  virtual WaitResult wait(const StartedProcess& started, std::uint32_t milliseconds) = 0;

  /// Status of the query; `exitCode` is 259 while the process runs.
  virtual Status exitCode(const StartedProcess& started, std::int32_t& exitCode) = 0;

  /// Closes one handle and sets it to 0; 0 is ignored.
  virtual void close(std::uintptr_t& handle) = 0;

  /// Binds to `moniker` and runs the WMI `query`; `names` gets each found item's "Name". A failure returns the
  /// component object model's result as a status (its 32 bits) and leaves `names` empty.
  virtual Status queryNames(const std::string& moniker, const std::string& query, std::vector<std::string>& names) = 0;
};

}  // namespace platform
