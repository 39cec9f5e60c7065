#include "core/closedown.h"

#include <algorithm>
#include <string_view>

#include "base/error_handler.h"
#include "base/numbers.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/removal_task.h"
#include "env/add_remove_programs.h"
#include "env/auto_login.h"
#include "env/local_copy.h"
#include "env/reboot.h"
#include "exec/outcome.h"
#include "exec/process.h"

namespace {

constexpr const char* Source = "Closedown";
constexpr const char* RunKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";

namespace ExitCode {
constexpr int Succeeded = 0;
constexpr int Failed = 1;
constexpr int Cancelled = 2;
}  // namespace ExitCode

void RemoveDriveMapping(Run& run) {
  if (run.mappedDrive.empty()) return;
  const std::string removing = "Removing drive mapping for " + run.mappedDrive;
  run.log.Log(Source, 0, removing);
  if (GoShell(run, "net use " + run.mappedDrive + " /d", "", 30000, platform::ShowWindow::Hidden) == 0) {
    run.log.Log(Source, 0, "Drive mapping successfully removed");
  } else {
    run.log.Log(Source, GeneralError, removing + " failed - needs manual remove", !run.silent, EntryType::Warning);
  }
  run.mappedDrive.clear();
}

/// "dd-mmm-yyyy"
std::string InstallDate(const platform::LocalTime& today) {
  constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  return Padded(today.day, 2) + "-" + months[std::clamp(today.month, 1, 12) - 1] + "-" + Padded(today.year, 4);
}

constexpr const char* CurrentProductVersion = "Current Product Version";

struct ResetValue {
  RecordKey key;
  std::string name;
  std::string text = "";
};

void ResetValues(Run& run, bool productKnown) {
  const std::string version = productKnown ? modRegistry::ReadOrEmpty(run, ProductKey(run), Value::Version) : "";
  const ResetValue values[] = {
      {RecordKey::Installation, CurrentProductVersion, version},
      {RecordKey::Product, "Install Date", InstallDate(run.machine.clock().now())},
      {RecordKey::Product, Value::LastSequence},
      {RecordKey::Products, Value::Product},
      {RecordKey::Products, Value::Version},
      {RecordKey::Products, "Notify"},
      {RecordKey::Products, Value::Silent},
      {RecordKey::Products, Value::Verbose},
      {RecordKey::Products, "MailAddress"},
      {RecordKey::Installation, Value::CurrentComponentPath},
      {RecordKey::Product, "EndMessage"},
      {RecordKey::Product, Value::NumberOfLoops},
      {RecordKey::Installation, "Installer Directory"},
      {RecordKey::Product, Value::QXIALocalInstall},
      {RecordKey::Product, Value::AbortOnFail},
  };
  for (const ResetValue& value : values) {
    if (value.key == RecordKey::Product && !productKnown) continue;
    // A run that failed to find a product says nothing about the one that is installed.
    if (value.name == CurrentProductVersion && !productKnown && (run.failed || run.productName.empty())) continue;
    // The mark of a local instance counts by its existence: it is removed, not emptied.
    if (value.name == Value::QXIALocalInstall) {
      modRegistry::RemoveValue(run, KeyOf(run, value.key), value.name);
    } else {
      modRegistry::WriteOrTell(run, KeyOf(run, value.key), value.name, value.text, Source);
    }
  }
  modRegistry::RemoveValue(run, ProductsKey, Value::QXIALocalInstall);
  modRegistry::WriteOrTell(run, RunKey, Title, "", Source);
}

void ResetStartForUser(Run& run) {
  const auto user = platform::RegistryRoot::CurrentUser;
  if (modRegistry::RegKeyExists(run, RunKey, "", user)) modRegistry::WriteOrTell(run, RunKey, Title, "", Source, user);
}

void SwitchAutoLoginOff(Run& run) {
  if (DisableAutoLogin(run) || run.silent) return;
  run.machine.dialogs().messageBox({.title = Title,
                                    .text = "Could not disable autologon - please contact support",
                                    .icon = platform::BoxIcon::Critical});
}

/// A local instance removes itself, unless it is needed for an uninstall; and an uninstall what nobody needs any more.
void RemoveLocalProgram(Run& run) {
  if (!run.programToRemove.empty()) {
    ScheduleRemoval(run, run.programToRemove);
  } else if (run.localInstance && !IsLocalCopyNeeded(run)) {
    ScheduleRemoval(run, run.machine.machine().programPath());
  }
}

void CloseLog(Run& run) {
  for (const char* row : {"************************", "QX Installer Run complete", "*********"}) {
    run.log.Log(Source, 0, row);
  }
  if (run.log.HoldsEntries()) {
    // The run never got a log of its own. Nobody is asked about a default log that cannot be written.
    run.log.SilentRun(true);
    run.log.ReleaseEntries();
  } else {
    run.log.ArchiveLogFile(run.logFolders.archive);
  }
  run.log.LogToFile(false);
}

int ExitCodeOf(Run& run) {
  if (run.cancelled) return ExitCode::Cancelled;
  std::string reason;
  return GetProductResult(run, reason) ? ExitCode::Succeeded : ExitCode::Failed;
}

}  // namespace

void Closedown(Run& run) {
  const auto step = [&run](auto body) { return Guarded(run, Source, body); };
  const bool productKnown =
      step([&] { return !run.productName.empty() && modRegistry::RegKeyExists(run, ProductKey(run), ""); });
  const bool logonRequested =
      step([&] { return productKnown && IsTrue(modRegistry::RegRead(run, ProductKey(run), Value::RequestLogon)); });
  const bool closingRestart =
      step([&] { return IsCommit(modRegistry::ReadOrEmpty(run, InstallationKey, Value::Reboot)); });

  step([&] { RemoveDriveMapping(run); });
  run.log.Log(Source, 0, "Resetting system registry");
  step([&] { ResetValues(run, productKnown); });
  step([&] { ResetStartForUser(run); });
  step([&] { return modRegistry::WriteOrTell(run, InstallationKey, Value::Reboot, "", Source); });
  if (logonRequested && !run.logonDeclined) step([&] { SwitchAutoLoginOff(run); });
  step([&] { RemoveLocalProgram(run); });
  step([&] { ForgetCleanUp(run); });
  step([&] { run.machine.mainWindow().removeTrayIcon(); });
  step([&] { CloseLog(run); });
  const int exitCode = ExitCodeOf(run);
  if (closingRestart) Reboot(run, true, exitCode);
  throw ProgramEnd{exitCode};
}
