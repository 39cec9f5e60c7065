#include "exec/msi_run.h"

#include <algorithm>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/numbers.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "env/install_type.h"
#include "env/uninstall_component.h"
#include "exec/captions.h"
#include "exec/msi_queries.h"
#include "exec/process.h"
#include "exec/versions.h"

namespace {

constexpr std::uint32_t MinuteMilliseconds = 60000;
constexpr int DefaultLoops = 5;

/// What to do about a package, given what is installed.
enum class PackagePlan { Install, Skip, UninstallOlderFirst };

PackagePlan PlanPackage(Run& run, const InstalledProduct* installed, bool repair) {
  if (installed == nullptr || repair) return PackagePlan::Install;
  return IsNewerVersion(run, run.component.productVersion, installed->version) ? PackagePlan::UninstallOlderFirst
                                                                               : PackagePlan::Skip;
}

void LogVerbose(Run& run, const std::string& text) {
  if (run.verbose) run.log.Log("ExecuteMsi", 0, text);
}

void UninstallOlder(Run& run, const std::string& installedVersion) {
  LogVerbose(run, "This is a newer version (" + run.component.productVersion + ") so previous version (" +
                      installedVersion + ") will be uninstalled first");
  run.window.Status(modLanguage::Text(run, modLanguage::Caption::Uninstalling) + run.component.displayName);
  InstallTypeKeeper installType(run);
  modQXInstallationMain::ExecuteUninstall(run, run.component.displayName, true, true);
  installType.PutBack();
  run.window.Pump();
  run.log.Log("ExecuteMsi", 0, "Check for multiple MSIExec processes (Post Uninstall): Starting Check...");
  OneMSIExec(run);
}

bool AsksForRestart(std::int32_t code) {
  return code == 1641 || code == 3010 || code == 3011;
}

void JudgeMsiexec(Run& run, std::int32_t code) {
  constexpr const char* source = "modQXInstallationMain.ExecuteMSI";
  if (code == 0) return;
  if (AsksForRestart(code)) {
    run.log.Log(source, 0, "Rebooting to complete the installation");
    modRegistry::RegWrite(run, InstallationKey, Value::Reboot, "immediate");
    return;
  }
  run.log.Log(source, 6088, modErrorBase::GetErrorText(6088, {run.component.displayName}), false, EntryType::Error);
  RecordComponentFailure(run, code);
}

/// Minutes to wait before the user is told.
int WaitLimit(Run& run) {
  const double loops = modRegistry::ReadNumber(run, ProductKey(run), Value::NumberOfLoops);
  return loops >= 1 ? static_cast<int>(std::min(loops, 100000.0)) : DefaultLoops;
}

void TellUserToWait(Run& run) {
  run.log.Log("OneMSIExec", 0, "MSIExec is still running inform the user via a msgbox");
  run.machine.dialogs().messageBox(
      {.title = "Process In Use",
       .text = std::string("The Process 'MSIEXEC' is currently running - The installation has been paused!") +
               LineBreak + "Please ensure no other applications are using msiExec and press OK",
       .icon = platform::BoxIcon::Exclamation});
}

/// One round of checks, a minute apart; false when msiexec was busy at all of them.
bool FreeWithinOnePass(Run& run, int limit) {
  for (int i = 0; i <= limit; ++i) {
    if (CheckProcesses(run)) {
      run.log.Log("OneMSIExec", 0, "Install can continue");
      return true;
    }
    if (i == limit && run.silent) {
      run.log.Log("OneMSIExec", 0,
                  "MSIExec is still running , we're in silent mode so keep checking, install cannot continue until "
                  "MSIExec is completed");
      return false;
    }
    if (i == limit) TellUserToWait(run);
    run.window.Pump();
    run.machine.clock().sleep(MinuteMilliseconds);
  }
  return false;
}

}  // namespace

namespace modQXInstallationMain {

bool ExecuteMSI(Run& run, const std::string& arguments, bool repair, const std::string& workingFolder,
                PackageRun& told) {
  told = {};
  Guarded(run, "modQXInstallationMain.ExecuteMSI", [&] {
    ResetComponentResult(run);
    run.window.StatusLine("Proceeding with installation");
    // Two blanks behind the switch: its own and the added one.
    told.command = std::string("msiexec ") + (repair ? "/fv " : "/i ") + " " + arguments;
    const InstalledProduct* installed = FindInstalledProduct(run, run.component.productCode);
    if (installed != nullptr) {
      LogVerbose(run, "A Component with this code is already installed: <br>Code : " + installed->code +
                          "<BR>Name : " + installed->name + "<BR>Version : " + installed->version);
    }
    const PackagePlan plan = PlanPackage(run, installed, repair);
    told.alreadyInstalled = plan == PackagePlan::Skip;
    if (told.alreadyInstalled) {
      LogVerbose(run, "and its version is the same or higher, so install will not be done.");
      return;
    }
    if (plan == PackagePlan::UninstallOlderFirst) UninstallOlder(run, std::string(installed->version));
    run.window.StatusLine(modLanguage::Text(run, modLanguage::Caption::Installing) + " " + run.component.displayName);
    told.exitCode = GoShell(run, told.command, workingFolder);
    JudgeMsiexec(run, told.exitCode);
  });
  return true;
}

}  // namespace modQXInstallationMain

bool OneMSIExec(Run& run) {
  const int limit = WaitLimit(run);
  while (!FreeWithinOnePass(run, limit)) {
  }
  return true;
}

bool CheckProcesses(Run& run) {
  constexpr const char* source = "CheckProcesses";
  return Guarded(run, source, [&] {
    std::vector<std::string> names;
    std::string askedThrough;
    const platform::Status asked = run.machine.processes().runningNames(names, askedThrough);
    if (asked != platform::Status::Ok) {
      throw Error(Number(asked), "The list of processes could not be read through " + askedThrough, source);
    }
    const auto running = std::count_if(names.begin(), names.end(),
                                       [](const std::string& name) { return LowerCase(name) == "msiexec.exe"; });
    if (running > 1) {
      run.log.Log(source, 0, "MSIExec is already running - SLEEP for one minute");
      return false;
    }
    run.log.Log(source, 0, "MSIExec is Not running");
    return true;
  });
}
