#include "core/start.h"

#include "base/procedure.h"
#include "base/text.h"
#include "core/command_line.h"
#include "core/display.h"
#include "core/exit_codes.h"
#include "core/identify.h"
#include "core/initialise.h"
#include "core/resume.h"
#include "core/run_stops.h"
#include "env/auto_run.h"
#include "env/local_copy.h"
#include "env/reboot.h"
#include "exec/product_result.h"

namespace assistant {
namespace {

bool LocalInstanceIsRecorded(const Run& run) {
  return run.record().has(Value::LocalInstance);
}

/// The mark alone may be that of a local copy which ended badly; this program may be the one on the medium.
bool IsLocalInstance(const Run& run) {
  return LocalInstanceIsRecorded(run) &&
         EqualIgnoringCase(run.program.path, LocalProgram(run.machine.machine(), run.program));
}

/// What an earlier run asked for, or one that was broken off, must not restart the machine in this one.
bool ForgetRestartRequest(const Run& run, const Procedure& here) {
  return here.guard([&] {
    const ProductRecord record = run.record();
    return record.read(Value::Reboot).empty() || record.writeOrTell(here, Value::Reboot, "");
  });
}

/// Nobody could tell whether a component asked for a restart. An uninstall asks for none.
void RequireOwnRequests(const Run& run, const Procedure& here) {
  if (run.state.requestsAreOwn || run.isUninstall()) return;
  throw here.failure(6087, {std::string("HKLM\\") + InstallationKey, Value::Reboot.name});
}

void ReadCommandLine(Run& run) {
  if (!run.options.argumentText.empty()) GetCommandLine(run, run.options.argumentText);
}

void DecideKind(Run& run) {
  if (!run.isUninstall() && ResumesRun(run)) run.state.kind = RunKind::Resumed;
}

/// Without a record nothing could be taken off again, and a restart would lead nowhere.
void TryRecords(const Run& run, const Procedure& here) {
  run.record().write(Value::RunProcessReturn, "");
  RequireRecords(run, here);
}

void StartUninstallRun(Run& run) {
  run.product.endMessage =
      "QX Installation Assistant has successfully un-installed the product " + run.options.uninstallProduct;
  ShowRun(run);
  Initialise(run);
}

void StartResumedRun(Run& run, const Procedure& here) {
  KnowPendingProduct(run, here);
  IdentifyProduct(run, here);
  here.action("System has been re-booted by the application.");
  StartFromReboot(run);
}

/// A power cut on the way into or out of a restart can leave the script behind: it would start a run at every logon.
void StartFreshRun(Run& run, const Procedure& here) {
  IdentifyProduct(run, here);
  modAutoRun::ForgetAutoRun(run.services);
  WipeProductRecord(run, here);
  SetProductResult(run, true, "");
  RequireRecords(run, here);
  if (LocalInstanceIsRecorded(run)) here.action("Starting Local instance of QXIA");
  ShowRun(run);
  Initialise(run);
}

void BringOtherCopyForward(platform::MainWindow& window, platform::OtherWindows& windows) {
  const platform::WindowHandle own = window.handle();
  const std::string caption = windows.caption(own);
  // Without its caption, this copy's own window is not the one that is found.
  windows.setCaption(own, "");
  const platform::WindowHandle other = windows.find(WindowClass(windows, own), caption);
  windows.setCaption(own, caption);
  if (other.value == 0) return;
  windows.restore(other);
  windows.focus(other);
}

/// What cannot be told is shown, and does not keep the run from going on: there is no log yet.
bool IsSecondCopy(const Run& run) {
  try {
    // Also a copy that the mark lets pass holds the place against those that come behind it.
    return run.machine.machine().anotherCopyRuns() && !LocalInstanceIsRecorded(run);
  } catch (const Error& failure) {
    run.machine.dialogs().messageBox({.title = "Prevent Duplicate",
                                      .text = "Error: " + std::to_string(failure.number()) + LineBreak + LineBreak +
                                              "Description: " + failure.text(),
                                      .icon = platform::BoxIcon::Exclamation});
    return false;
  }
}

}  // namespace

std::string WindowClass(platform::OtherWindows& windows, platform::WindowHandle window) {
  return windows.className(window);
}

void Main(Run& run) {
  const Procedure here(run.services.log, "Main");
  run.options.argumentText = ArgumentText(run.machine.machine().commandLine(), run.program.path);
  run.state.restartArguments = Trim(run.options.argumentText);
  if (AsksForHelp(run.options.argumentText)) {
    ShowAboutBox(run.services);
    throw RunStops{.how = RunStops::How::AtOnce};
  }
  const auto failure = here.failureOf(
      [&] {
        run.services.window.create(Title);
        PreventDuplicate(run);
        run.services.log.start(IsResumeRecorded(run.record()));
        run.state.requestsAreOwn = ForgetRestartRequest(run, here);
        run.state.localInstance = IsLocalInstance(run);
        ReadCommandLine(run);
        DecideKind(run);
        RequireOwnRequests(run, here);
        // An uninstall records nothing before its first removal.
        if (!run.isUninstall()) TryRecords(run, here);
        switch (run.state.kind) {
          case RunKind::Uninstall:
            return StartUninstallRun(run);
          case RunKind::Resumed:
            return StartResumedRun(run, here);
          case RunKind::Fresh:
            return StartFreshRun(run, here);
        }
      },
      Shown::UnlessSilent);
  if (failure) throw RunStops{RunStops::How::Refused, *failure};
}

void PreventDuplicate(const Run& run) {
  if (!IsSecondCopy(run)) return;
  BringOtherCopyForward(run.machine.mainWindow(), run.machine.otherWindows());
  throw RunStops{.how = RunStops::How::AtOnce, .exitCode = ExitCode::AnotherCopyRuns};
}

}  // namespace assistant
