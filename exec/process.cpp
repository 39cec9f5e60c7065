#include "exec/process.h"

#include <algorithm>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "platform/owned.h"

namespace {

constexpr std::uint32_t PollMilliseconds = 100;
constexpr std::uint32_t RestMilliseconds = 500;

/// The dots behind the status line: one more at every third poll, none again after the twelfth.
class StatusDots {
 public:
  explicit StatusDots(frmMain& window) : window_(window) {
    const std::string line = LowerCase(window.StatusLine());
    animates_ = window.Visible() && (line.rfind("installing", 0) == 0 || line == "proceeding with installation");
  }

  void Poll() {
    if (!animates_) return;
    ++polls_;
    const std::string line = window_.StatusLine();
    if (polls_ >= 12) {
      polls_ = 0;
      window_.AnimateStatusLine(line.substr(0, line.size() - std::min<std::size_t>(3, line.size())));
    } else if (polls_ % 3 == 0) {
      window_.AnimateStatusLine(line + ".");
    }
  }

 private:
  frmMain& window_;
  bool animates_ = false;
  int polls_ = 0;
};

}  // namespace

std::int32_t GoShell(Run& run, const std::string& commandLine, const std::string& workingFolder,
                     [[maybe_unused]] std::int32_t timeout, platform::ShowWindow showWindow, std::int32_t loggedFlags) {
  if (run.verbose) run.log.Log("GoShell", 0, "Running " + commandLine);
  platform::OwnedProcess process(run.machine.processes());
  const platform::Status started =
      run.machine.processes().start(commandLine, workingFolder, showWindow, process.receive());
  std::int32_t result = -1;
  if (started == platform::Status::Ok) {
    result = WaitForTermination(run, *process);
    process.close();
    run.machine.clock().sleep(RestMilliseconds);
  } else {
    // The text says "False" for the inheritance of handles although the call passes true.
    run.log.Log("GoShell", 0,
                "CreateProcess(vbNullString," + commandLine + ", udtSecAtt1, udtSecAtt2, False," +
                    std::to_string(loggedFlags) + ", 0&," + workingFolder + ", udtStartInfo, udtProcInfo)",
                false, EntryType::Error);
    run.log.Log("GoShell", 0, "The system's reason: " + modErrorBase::SystemErrorText(started));
  }
  run.window.Pump();
  return result;
}

std::int32_t WaitForTermination(Run& run, const platform::StartedProcess& process) {
  platform::Processes& processes = run.machine.processes();
  StatusDots dots(run.window);
  // A program that is slow to show its first window keeps this one alive as well.
  while (processes.waitForInputIdle(process, PollMilliseconds) == platform::WaitResult::TimedOut) {
    dots.Poll();
    run.window.Pump();
  }
  platform::WaitResult waited = platform::WaitResult::TimedOut;
  while (waited == platform::WaitResult::TimedOut) {
    waited = processes.wait(process, PollMilliseconds);
    dots.Poll();
    if (waited == platform::WaitResult::TimedOut) run.window.Pump();
  }
  std::int32_t exitCode = -1;
  processes.exitCode(process, exitCode);
  if (run.verbose) run.log.Log("WaitForTermination", 0, "Component has finished");
  return exitCode;
}

namespace modMain {

bool ExecuteInstall(Run& run, const std::string& commandLine, [[maybe_unused]] bool unused,
                    const std::string& workingFolder, const std::string& fileType) {
  constexpr const char* source = "modMain.ExecuteInstall";
  return Guarded(run, source, [&] {
    ResetComponentResult(run);
    run.window.StatusLine("Proceeding with installation");
    const std::int32_t code = GoShell(run, commandLine, workingFolder.empty() ? "c:\\temp" : workingFolder);
    const std::string executed = "Executing " + commandLine;
    const std::string shown = std::to_string(code);
    if (IsSuccessCode(code)) {
      run.log.Log(source, 0, executed + " returned no errors (return code: " + shown + ")");
      return true;
    }
    // A program that ran decides with its own verdict, whatever it exits with; a script's exit code counts.
    if (fileType == "exe" && code != -1) {
      run.log.Log(source, 0, executed + " gave a return number of " + shown, false, EntryType::Warning);
      return true;
    }
    const bool failed = fileType == "exe" || fileType == "vbs";
    if (failed) RecordComponentFailure(run, code);
    run.log.Log(source, 0, executed + " returned Error number " + shown, false, EntryType::Error);
    return !failed;
  });
}

}  // namespace modMain

void RecordComponentFailure(Run& run, std::int32_t exitCode) {
  modRegistry::RegWrite(run, run.component.key, Value::ProcessReturn, "Fail");
  modRegistry::RegWrite(run, run.component.key, Value::Message,
                        "Installation failed returning error " + std::to_string(exitCode));
}

void ResetComponentResult(Run& run) {
  modRegistry::RegWrite(run, run.component.key, Value::ProcessReturn, "");
  modRegistry::RegWrite(run, run.component.key, Value::Message, "");
}
