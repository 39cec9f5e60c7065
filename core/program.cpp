#include "core/program.h"

#include "base/procedure.h"
#include "base/run.h"
#include "base/text.h"
#include "core/closedown.h"
#include "core/display.h"
#include "core/exit_codes.h"
#include "core/run_stops.h"
#include "core/session_end.h"
#include "core/start.h"
#include "core/work.h"
#include "env/auto_run.h"
#include "env/reboot.h"
#include "exec/product_result.h"

namespace assistant {
namespace {

using platform::WindowEvent;

/// A resumed run goes on unasked, and a silent one asks nobody.
bool AsksBeforeWork(const Run& run) {
  return !run.state.silent && run.state.kind != RunKind::Resumed;
}

/// Leaving the window now cancels the run. An uninstall that has not begun leaves the product as it is.
void AwaitContinue(Run& run) {
  run.state.phase = Phase::Waiting;
  run.machine.mainWindow().objectToSessionEnd(false);
  for (;;) {
    switch (run.machine.mainWindow().waitForEvent()) {
      case WindowEvent::About:
        ShowAboutBox(run.services);
        break;
      case WindowEvent::Continue:
        return;
      default:
        throw RunStops{RunStops::How::Cancelled, run.isUninstall() ? "" : UserAbortedRun};
    }
  }
}

/// Whatever a person does with the window ends the run, but for a look at the log.
void AwaitFinish(Run& run) {
  run.state.phase = Phase::Ended;
  OfferFinish(run.services);
  run.machine.mainWindow().objectToSessionEnd(false);
  while (run.machine.mainWindow().waitForEvent() == WindowEvent::About) ViewLog(run.services);
}

/// A run whose records could not all be written has not succeeded, and the run that goes on behind a restart must know.
void CountRefusals(Run& run) {
  const Refusals& refusals = run.services.refusals;
  if (refusals.any() && !run.state.failed) SetProductResult(run, false, refusals.first());
}

void ShowEnd(Run& run) {
  CountRefusals(run);
  if (run.state.silent) return;
  ShowResult(run);
  AwaitFinish(run);
}

/// What became of a run that was stopped, recorded and shown.
void TakeNote(Run& run, const RunStops& stop) {
  if (!stop.reason.empty()) SetProductResult(run, false, stop.reason);
  if (stop.how == RunStops::How::Cancelled) {
    const Procedure here(run.services.log, "frmMain");
    here.warn("Run ended at user request");
  }
  if (stop.how == RunStops::How::Cancelled || stop.how == RunStops::How::Declined) run.state.cancelled = true;
  if (stop.how != RunStops::How::CannotGoOn) return;
  if (!stop.windowText.empty()) run.services.window.status(stop.windowText);
  // What was begun has a result to be shown.
  if (run.state.phase == Phase::Working) return ShowEnd(run);
  if (!run.state.silent) AwaitFinish(run);
}

Closing CloseDown(Run& run) {
  CountRefusals(run);
  return Closedown(run);
}

/// The end was told before this run closed down.
void ShowRefusal(Run& run) {
  const Procedure here(run.services.log, "Closedown");
  here.tell(here.failure(run.services.refusals.first()), Shown::UnlessSilent);
}

int CloseAndLeave(Run& run) {
  run.machine.mainWindow().objectToSessionEnd(true);
  const bool wasRefused = run.services.refusals.any();
  const Closing closing = CloseDown(run);
  if (!wasRefused && run.services.refusals.any()) ShowRefusal(run);
  run.machine.mainWindow().whenSessionEnds({});
  if (closing.restart) Reboot(run.services, run.record(), Restart::Final);
  return closing.exitCode;
}

/// How a run ends whose end has been told. A silent one has an icon to take away.
int EndInstall(Run& run) {
  const Procedure here(run.services.log, "EndInstall");
  if (run.state.silent) here.guard([&] { run.machine.mainWindow().removeTrayIcon(); });
  return CloseAndLeave(run);
}

/// A run that could not go on behind the restart ends here: it would begin again, or never close down.
int EndWithoutRestart(Run& run) {
  SetProductResult(run, false, "The restart could not be recorded, so the machine was not restarted");
  ShowEnd(run);
  return EndInstall(run);
}

int LeaveForRestart(Run& run) {
  CountRefusals(run);
  if (!RecordResume(run.services, run.record(), run.product.name)) return EndWithoutRestart(run);
  // The restart ends the session, and what is to be gone on with must not be closed down then.
  run.machine.mainWindow().whenSessionEnds({});
  // A script without the record would start a run from the beginning, a record without the script waits for a person.
  modAutoRun::CreateAutoRun(run.services, run.program.folder, run.state.restartArguments);
  return Reboot(run.services, run.record(), Restart::ToGoOn) ? ExitCode::Succeeded : ExitCode::Failed;
}

int EndEarly(Run& run, const RunStops& stop) {
  if (stop.how == RunStops::How::AtOnce) return stop.exitCode;
  if (stop.how == RunStops::How::ForRestart) return LeaveForRestart(run);
  TakeNote(run, stop);
  return stop.how == RunStops::How::CannotGoOn ? EndInstall(run) : CloseAndLeave(run);
}

/// Closes down a run that waits for a person, as if that person had left it; nobody answers a box any more. The system
/// may end the program as soon as this returns.
void CloseForSessionEnd(Run& run) {
  if (run.state.sessionEnded) return;
  const Procedure here(run.services.log, "CloseForSessionEnd");
  here.action("The session ends, and the run with it");
  if (run.state.phase != Phase::Ended) {
    TakeNote(run, {RunStops::How::Cancelled, run.isUninstall() ? "" : UserAbortedRun});
  }
  BehaveAs(run, {.silent = true, .verbose = run.services.log.isVerbose()});
  CloseDown(run);
  run.state.sessionEnded = true;
}

/// A run from its start to its end. Every way out of it is in here.
int Drive(Run& run) {
  try {
    Main(run);
    if (AsksBeforeWork(run)) AwaitContinue(run);
    DoContinue(run);
    ShowEnd(run);
    return EndInstall(run);
  } catch (const RunStops& stop) {
    return EndEarly(run, stop);
  }
}

/// The run has closed down already.
void StopAfterSession(const Run& run) {
  if (run.state.sessionEnded) throw RunStops{.how = RunStops::How::AtOnce, .exitCode = ExitCodeOf(run)};
}

/// The session may end as well while the end of the run is shown.
int RunToItsEnd(Run& run) {
  try {
    return Drive(run);
  } catch (const RunStops& sessionEnded) {
    return sessionEnded.exitCode;
  }
}

}  // namespace

int RunProgram(platform::Platform& machine) {
  PlatformOfSession ofSession(machine);
  Run run(ofSession);
  ofSession.lookBehindMessages([&] { StopAfterSession(run); });
  machine.mainWindow().whenSessionEnds([&] { CloseForSessionEnd(run); });
  const int exitCode = RunToItsEnd(run);
  machine.mainWindow().destroy();
  return exitCode;
}

}  // namespace assistant
