#include "exec/process.h"

#include <algorithm>

#include "base/error_texts.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"

namespace assistant {
namespace {

constexpr std::uint32_t PollMilliseconds = 100;
constexpr std::uint32_t RestMilliseconds = 500;

/// The dots behind the status line: one more at every third poll, none again after the twelfth.
class StatusDots {
 public:
  explicit StatusDots(frmMain& window) : window_(window) {
    const std::string line = LowerCase(window.statusLine());
    animates_ = window.isVisible() && (line.rfind("installing", 0) == 0 || line == "proceeding with installation");
  }

  void poll() {
    if (!animates_) return;
    ++polls_;
    const std::string line = window_.statusLine();
    if (polls_ >= 12) {
      polls_ = 0;
      window_.animateStatusLine(line.substr(0, line.size() - std::min<std::size_t>(3, line.size())));
    } else if (polls_ % 3 == 0) {
      window_.animateStatusLine(line + ".");
    }
  }

 private:
  frmMain& window_;
  bool animates_ = false;
  int polls_ = 0;
};

/// What the exit code of a component's file means for the component.
enum class CodeMeans {
  Success,
  Warning,      ///< a program that ran decides with its own verdict, whatever it exits with
  ErrorToTell,  ///< an error in the log, and nothing else
  Failure,
};

CodeMeans MeaningOf(std::int32_t code, const FileKind& kind, const std::string& extension) {
  if (IsSuccessCode(code)) return CodeMeans::Success;
  if (!ExitCodeCounts(kind, extension)) return CodeMeans::ErrorToTell;
  const bool decidesItself = kind.badExitCode == BadExitCode::CountsWhenNotStarted && code != NotStarted;
  return decidesItself ? CodeMeans::Warning : CodeMeans::Failure;
}

void TellExitCode(const Procedure& here, CodeMeans meaning, const std::string& commandLine, std::int32_t code) {
  const std::string executed = "Executing " + commandLine;
  const std::string shown = std::to_string(code);
  if (meaning == CodeMeans::Success) {
    here.action(executed + " returned no errors (return code: " + shown + ")");
  } else if (meaning == CodeMeans::Warning) {
    here.warn(executed + " gave a return number of " + shown);
  } else {
    here.error(executed + " returned Error number " + shown);
  }
}

/// How a program is run.
struct ShellOptions {
  platform::ShowWindow showWindow;
  std::optional<std::uint32_t> milliseconds;  ///< that it is waited for; nothing for ever
  std::string shown;                          ///< the command line as the log tells it; "" as it is
};

/// The exit code; nothing when the time is over, and the process is left alone. Closes the process.
std::optional<std::int32_t> WaitForTermination(const Services& services, platform::OwnedProcess& process,
                                               std::optional<std::uint32_t> milliseconds) {
  platform::Processes& processes = services.machine.processes();
  StatusDots dots(services.window);
  const std::uint32_t start = services.machine.clock().ticks();
  const auto isOver = [&] { return milliseconds && services.machine.clock().ticks() - start >= *milliseconds; };
  // A program that is slow to show its first window keeps this one alive as well.
  while (!isOver() && processes.waitForInputIdle(*process, PollMilliseconds) == platform::WaitResult::TimedOut) {
    dots.poll();
    services.window.pump();
  }
  platform::WaitResult waited = platform::WaitResult::TimedOut;
  while (waited == platform::WaitResult::TimedOut) {
    if (isOver()) return std::nullopt;
    waited = processes.wait(*process, PollMilliseconds);
    dots.poll();
    if (waited == platform::WaitResult::TimedOut) services.window.pump();
  }
  // Where the system does not tell the code, the program counts as one that was never started.
  std::int32_t exitCode = NotStarted;
  processes.exitCode(*process, exitCode);
  process.close();
  return exitCode;
}

std::optional<std::int32_t> Shell(const Services& services, const std::string& commandLine,
                                  const std::string& workingFolder, const ShellOptions& options) {
  const Procedure here(services.log, "GoShell");
  const std::string& shown = options.shown.empty() ? commandLine : options.shown;
  here.detail("Running " + shown);
  platform::OwnedProcess process(services.machine.processes());
  const platform::Status started =
      services.machine.processes().start(commandLine, AsAsked(workingFolder), options.showWindow, process.receive());
  std::optional<std::int32_t> result = NotStarted;
  if (started == platform::Status::Ok) {
    result = WaitForTermination(services, process, options.milliseconds);
    if (result) here.detail("Component has finished");
    services.machine.clock().sleep(RestMilliseconds);
  } else {
    // The text says "False" for the inheritance of handles although the call passes true, and 128 whatever the flags.
    here.error("CreateProcess(vbNullString," + shown + ", udtSecAtt1, udtSecAtt2, False,128, 0&," + workingFolder +
               ", udtStartInfo, udtProcInfo)");
    here.action("The system's reason: " + modErrorBase::SystemErrorText(started));
  }
  services.window.pump();
  return result;
}

}  // namespace

std::int32_t GoShell(const Services& services, const std::string& commandLine, const std::string& workingFolder,
                     platform::ShowWindow showWindow) {
  return Shell(services, commandLine, workingFolder, {showWindow, std::nullopt, ""}).value_or(NotStarted);
}

std::optional<std::int32_t> RunSystemCommand(const Services& services, const SystemCommand& command) {
  const Procedure here(services.log, "RunSystemCommand");
  const auto limit = static_cast<std::uint32_t>(command.seconds) * 1000;
  const auto code = Shell(services, command.commandLine, "", {platform::ShowWindow::Hidden, limit, command.shown});
  if (!code) {
    here.warn("The command " + command.shown + " has not ended after " + std::to_string(command.seconds) +
              " seconds. It is left to itself, and the run goes on; run the command by hand to see what it waits for.");
  }
  return code;
}

bool ExecuteInstall(const Services& services, const Component& component, const FileKind& kind,
                    const ComponentCommand& command) {
  const Procedure here(services.log, "modMain.ExecuteInstall");
  return here.guard([&] {
    ResetComponentResult(services, component);
    services.window.statusLine("Proceeding with installation");
    const std::int32_t code =
        GoShell(services, command.commandLine, command.workingFolder.empty() ? "c:\\temp" : command.workingFolder);
    const CodeMeans meaning = MeaningOf(code, kind, command.extension);
    if (meaning == CodeMeans::Failure) RecordComponentFailure(services, component, code);
    TellExitCode(here, meaning, command.commandLine, code);
    return meaning != CodeMeans::Failure;
  });
}

void RecordComponentFailure(const Services& services, const Component& component, std::int32_t exitCode) {
  WriteNow(services, component, ComponentValue::ProcessReturn, "Fail");
  WriteNow(services, component, ComponentValue::Message,
           "Installation failed returning error " + std::to_string(exitCode));
}

void ResetComponentResult(const Services& services, const Component& component) {
  WriteNow(services, component, ComponentValue::ProcessReturn, "");
  WriteNow(services, component, ComponentValue::Message, "");
}

}  // namespace assistant
