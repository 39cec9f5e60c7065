#include "core/closedown.h"

#include <algorithm>

#include "base/numbers.h"
#include "base/procedure.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/exit_codes.h"
#include "env/add_remove_programs.h"
#include "env/auto_login.h"
#include "env/auto_run.h"
#include "env/drive_mapping.h"
#include "env/local_copy.h"
#include "env/reboot.h"
#include "exec/product_result.h"

namespace assistant {
namespace {

constexpr const char* RunKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";

/// "dd-mmm-yyyy"
std::string InstallDate(const platform::LocalTime& today) {
  constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  return Padded(today.day, 2) + "-" + months[std::clamp(today.month, 1, 12) - 1] + "-" + Padded(today.year, 4);
}

/// An uninstall that came to no removal leaves what is recorded as it was.
bool LeavesRecord(const Run& run) {
  return run.isUninstall() && !run.state.removalBegan;
}

/// What the run leaves to be read by others.
void RecordProduct(const Run& run, const Procedure& here, bool productKnown) {
  if (LeavesRecord(run)) return;
  const ProductRecord record = run.record();
  const std::string version = productKnown ? record.read(Value::Version) : "";
  // A run that failed to find a product says nothing about the one that is installed.
  if (productKnown || !(run.state.failed || run.product.name.empty())) {
    record.writeOrTell(here, Value::CurrentProductVersion, version);
  }
  if (productKnown) record.writeOrTell(here, Value::InstallDate, InstallDate(run.machine.clock().now()));
}

/// False for values that are still needed, and for those of a product that has no record.
bool IsReset(const Run& run, const RecordValue& value, bool productKnown) {
  if (value.key == RecordKey::Installation) return true;
  if (LeavesRecord(run)) return false;
  if (value.key == RecordKey::Product) return productKnown;
  // What goes on behind a pending restart takes them from there.
  return !IsResumeRecorded(run.record());
}

void ResetValues(const Run& run, const Procedure& here, bool productKnown) {
  const ProductRecord record = run.record();
  for (const RecordValue* value : RecordValues()) {
    if (!IsReset(run, *value, productKnown)) continue;
    if (value->atClosedown == AtClosedown::Emptied) record.writeOrTell(here, *value, "");
    if (value->atClosedown == AtClosedown::Removed) record.remove(*value);
  }
}

void ResetStart(const Run& run, const Procedure& here) {
  modRegistry::WriteOrTell(run.services, here, RunKey, Title, {""});
}

void ResetStartForUser(const Run& run, const Procedure& here) {
  const auto user = platform::RegistryRoot::CurrentUser;
  if (!modRegistry::RegKeyExists(run.machine.registry(), RunKey, "", user)) return;
  modRegistry::WriteOrTell(run.services, here, RunKey, Title, {"", platform::ValueType::Text, user});
}

/// What a resumed run could not delete, or a power cut left behind, would start the program at every logon.
void RemoveStartScript(const Run& run) {
  if (IsResumeRecorded(run.record()) || modAutoRun::ForgetAutoRun(run.services)) return;
  run.services.refusals.add("The script that starts the program at the logon could not be deleted");
}

/// While a restart is pending, the logon behind it is still wanted.
void SwitchAutoLoginOff(const Run& run) {
  const ProductRecord record = run.record();
  if (!IsAutoLoginOurs(record) || IsResumeRecorded(record)) return;
  if (DisableAutoLogin(run.services, record)) return;
  run.services.refusals.add("Automatic logon could not be switched off");
  if (run.state.silent) return;
  run.machine.dialogs().messageBox({.title = Title,
                                    .text = "Could not disable autologon - please contact support",
                                    .icon = platform::BoxIcon::Critical});
}

/// A local instance removes itself, unless it is needed for an uninstall; and an uninstall what nobody needs any more.
void RemoveLocalProgram(const Run& run, const Procedure& here) {
  if (!run.state.programToRemove.empty()) {
    ScheduleRemoval(run.services, here, run.state.programToRemove);
  } else if (run.state.localInstance && !IsLocalCopyNeeded(run.machine.registry(), run.program.path)) {
    ScheduleRemoval(run.services, here, run.program.path);
  }
}

int ExitCodeFor(const Run& run, bool succeeded) {
  if (!run.state.askedFor.empty()) return ExitCode::AnotherProductWaited;
  if (run.state.cancelled) return ExitCode::Cancelled;
  // Closing down writes as well.
  return !run.services.refusals.any() && succeeded ? ExitCode::Succeeded : ExitCode::Failed;
}

void CloseLog(const Run& run, const Procedure& here, bool restart) {
  clsAppLog& log = run.services.log;
  // The run may never have got a log of its own. Nobody is asked about a default log that cannot be written.
  const bool hasOwnLog = !log.holdsEntries() && !run.logFolders.archive.empty();
  if (hasOwnLog) log.holdClosingRows();
  for (const char* row : {"************************", "QX Installer Run complete", "*********"}) here.action(row);
  if (restart) AnnounceRestart(log);
  if (hasOwnLog) return log.finish(run.logFolders.archive);
  log.beSilent(true);
  log.releaseEntries();
  log.logToFile(false);
}

}  // namespace

int ExitCodeOf(const Run& run) {
  return ExitCodeFor(run, GetProductResult(run).succeeded);
}

Closing Closedown(const Run& run) {
  const Procedure here(run.services.log, "Closedown");
  const ProductRecord record = run.record();
  // No step keeps the next ones back, and none is passed over unseen.
  const auto attempt = [&](auto&& step) {
    if (const auto failure = here.failureOf(step)) run.services.refusals.add(*failure);
  };
  bool productKnown = false;
  bool restart = false;
  attempt([&] { productKnown = !run.product.name.empty() && record.exists(); });
  attempt([&] { restart = run.state.requestsAreOwn && IsCommit(record.read(Value::Reboot)); });

  attempt([&] { RemoveDriveMapping(run.services, here, run.state.mappedDrive); });
  // A resumed run that comes here goes on no more, wherever it ended.
  if (run.state.kind == RunKind::Resumed) attempt([&] { CallOffRestart(run.services, record); });
  here.action("Resetting system registry");
  attempt([&] { RecordProduct(run, here, productKnown); });
  attempt([&] { ResetValues(run, here, productKnown); });
  attempt([&] { ResetStart(run, here); });
  attempt([&] { ResetStartForUser(run, here); });
  attempt([&] { record.writeOrTell(here, Value::Reboot, ""); });
  attempt([&] { RemoveStartScript(run); });
  attempt([&] { SwitchAutoLoginOff(run); });
  attempt([&] { RemoveLocalProgram(run, here); });
  attempt([&] { ForgetCleanUp(run); });
  attempt([&] { run.machine.mainWindow().removeTrayIcon(); });
  // While the log can still tell that there is none to be read.
  const bool succeeded = GetProductResult(run).succeeded;
  attempt([&] { CloseLog(run, here, restart); });
  return {ExitCodeFor(run, succeeded), restart};
}

}  // namespace assistant
