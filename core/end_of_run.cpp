#include "core/end_of_run.h"

#include "base/error_handler.h"
#include "base/text.h"
#include "core/closedown.h"
#include "exec/captions.h"
#include "exec/outcome.h"

namespace {

namespace Caption = modLanguage::Caption;
using platform::Control;

std::string SuccessText(const Run& run) {
  return run.endMessage.empty() ? modLanguage::Text(run, Caption::AllCompleted) : run.endMessage;
}

int FailureCaption(const Run& run) {
  if (run.uninstall) return run.aborted ? Caption::UninstallAborted : Caption::SomeFailedToUninstall;
  return run.aborted ? Caption::InstallAborted : Caption::SomeFailedToInstall;
}

}  // namespace

void EndInstall(Run& run) {
  Guarded(run, "EndInstall", [&] { run.machine.mainWindow().removeTrayIcon(); });
  Closedown(run);
}

void LeaveOrEnd(Run& run) {
  if (run.silent) EndInstall(run);
  run.window.Caption(Control::Continue, modLanguage::Text(run, Caption::Finish));
  run.window.Caption(Control::About, "View &log");
  run.window.ComeToFront();
  run.window.EnableEndButtons();
}

void EndAtRequest(Run& run) {
  SetProductResult(run, false, "User aborted run");
  EndUntouched(run);
}

void EndUntouched(Run& run) {
  run.log.Log("frmMain", 0, "Run ended at user request", false, EntryType::Warning);
  run.cancelled = true;
  Closedown(run);
}

void EndIfWanted(Run& run) {
  run.window.Pump();
  if (run.window.EndWanted()) EndAtRequest(run);
}

void ShowResult(Run& run) {
  if (run.silent) return;
  std::string reasons;
  const bool succeeded = GetProductResult(run, reasons);
  if (succeeded) {
    run.window.LongMessage(SuccessText(run));
  } else {
    run.window.LongMessage(modLanguage::Text(run, FailureCaption(run)) + LineBreak + LineBreak + reasons);
    // Many reasons fit only where they can be scrolled.
    const int heading = run.uninstall ? FailureCaption(run) : Caption::FollowingErrors;
    run.window.Status(modLanguage::Text(run, heading) + LineBreak + reasons);
  }
  LeaveOrEnd(run);
}

bool ShowsResult(Run& run) {
  return run.window.Visible() && run.window.Caption(Control::Continue) == modLanguage::Text(run, Caption::Finish);
}
