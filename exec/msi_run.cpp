#include "exec/msi_run.h"

#include <algorithm>
#include <vector>

#include "base/error.h"
#include "base/procedure.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/captions.h"
#include "exec/process.h"
#include "exec/versions.h"

namespace assistant {
namespace {

constexpr std::uint32_t MinuteMilliseconds = 60000;
constexpr std::uint32_t PollMilliseconds = 100;
constexpr int DefaultLoops = 5;

/// What tells no version may be advertised only, or broken: nothing that could be repaired.
bool HasVersion(const InstalledProduct* installed) {
  return installed != nullptr && !installed->version.empty();
}

PackagePlan::Step StepFor(clsAppLog& log, const Component& component, const InstalledProduct* installed) {
  if (installed == nullptr || IsTrue(component.upgrade)) return PackagePlan::Step::Run;
  // Nobody knows whether the one that is there is the same or newer.
  if (!HasVersion(installed) || IsNotGiven(component.productVersion)) return PackagePlan::Step::ReplaceOlder;
  return IsNewerVersion(log, component.productVersion, installed->version) ? PackagePlan::Step::ReplaceOlder
                                                                           : PackagePlan::Step::Skip;
}

bool AsksForRestart(std::int32_t code) {
  return code == 1641 || code == 3010 || code == 3011;
}

void JudgeMsiexec(const Procedure& here, const Services& services, const Component& component, std::int32_t code) {
  if (code == 0) return;
  if (AsksForRestart(code)) {
    here.action("Rebooting to complete the installation");
    modRegistry::RegWrite(services, InstallationKey, Value::Reboot.name, "immediate");
    return;
  }
  here.error(6088, {component.displayName()});
  RecordComponentFailure(services, component, code);
}

/// Minutes to wait before the user is told.
int WaitLimit(const ProductRecord& record) {
  const double loops = record.readNumber(Value::NumberOfLoops);
  return loops >= 1 ? static_cast<int>(std::min(loops, 100000.0)) : DefaultLoops;
}

void TellUserToWait(const Procedure& here, const Services& services) {
  here.action("MSIExec is still running inform the user via a msgbox");
  services.machine.dialogs().messageBox(
      {.title = "Process In Use",
       .text = std::string("The Process 'MSIEXEC' is currently running - The installation has been paused!") +
               LineBreak + "Please ensure no other applications are using msiExec and press OK",
       .icon = platform::BoxIcon::Exclamation});
}

/// A minute, or less where a person wants the run to end. Windows and the system are answered meanwhile.
void RestAMinute(const Services& services) {
  for (std::uint32_t rested = 0; rested < MinuteMilliseconds; rested += PollMilliseconds) {
    services.window.pump();
    if (services.window.endWanted()) return;
    services.machine.clock().sleep(PollMilliseconds);
  }
}

/// One round of checks, a minute apart; false when msiexec was busy at all of them, or a person wants the run to end.
bool FreeWithinOnePass(const Procedure& here, const Services& services, int limit) {
  for (int i = 0; i <= limit; ++i) {
    if (CheckProcesses(services)) {
      here.action("Install can continue");
      return true;
    }
    if (i == limit && services.log.isSilent()) {
      here.action(
          "MSIExec is still running , we're in silent mode so keep checking, install cannot continue until "
          "MSIExec is completed");
      return false;
    }
    if (i == limit) TellUserToWait(here, services);
    RestAMinute(services);
    if (services.window.endWanted()) return false;
  }
  return false;
}

/// The decision about a package and its execution are one procedure in the log. Rows with a number bear the longer
/// name, the others have always borne the shorter one.
Procedure PackageProcedure(clsAppLog& log) {
  return {log, "ExecuteMsi", "modQXInstallationMain.ExecuteMSI"};
}

std::vector<std::string> RunningNames(const Procedure& here, platform::Processes& processes) {
  std::vector<std::string> names;
  std::string askedThrough;
  const platform::Status asked = processes.runningNames(names, askedThrough);
  if (asked == platform::Status::Ok) return names;
  throw here.failure(asked, "The list of processes could not be read through " + askedThrough);
}

}  // namespace

PackagePlan PlanPackage(clsAppLog& log, const Component& component, const InstalledProducts& installed,
                        const std::string& arguments) {
  const Procedure here = PackageProcedure(log);
  PackagePlan plan;
  here.guard([&] {
    const InstalledProduct* present = installed.find(component.productCode);
    const bool repairs = IsTrue(component.upgrade) && HasVersion(present);
    // Two blanks behind the switch: its own and the added one.
    plan.command = std::string("msiexec ") + (repairs ? "/fv " : "/i ") + " " + arguments;
    if (present != nullptr) {
      plan.installedVersion = present->version;
      here.detail("A Component with this code is already installed: <br>Code : " + present->code +
                  "<BR>Name : " + present->name + "<BR>Version : " + present->version);
    }
    plan.step = StepFor(log, component, present);
    if (plan.step == PackagePlan::Step::Skip) {
      here.detail("and its version is the same or higher, so install will not be done.");
    }
  });
  return plan;
}

std::int32_t ExecuteMSI(const Services& services, const Component& component, const PackagePlan& plan,
                        const std::string& workingFolder) {
  const Procedure here = PackageProcedure(services.log);
  std::int32_t exitCode = NotStarted;
  here.guard([&] {
    services.window.statusLine(modLanguage::Text(modLanguage::Caption::Installing) + " " + component.displayName());
    exitCode = GoShell(services, plan.command, workingFolder);
    JudgeMsiexec(here, services, component, exitCode);
  });
  return exitCode;
}

bool OneMSIExec(const Run& run) {
  const Procedure here(run.services.log, "OneMSIExec");
  const int limit = WaitLimit(run.record());
  while (!FreeWithinOnePass(here, run.services, limit)) {
    if (run.services.window.endWanted()) return false;
  }
  return true;
}

bool CheckProcesses(const Services& services) {
  const Procedure here(services.log, "CheckProcesses");
  return here.guard([&] {
    const std::vector<std::string> names = RunningNames(here, services.machine.processes());
    const auto running = std::count_if(names.begin(), names.end(),
                                       [](const std::string& name) { return EqualIgnoringCase(name, "msiexec.exe"); });
    if (running > 1) {
      here.action("MSIExec is already running - SLEEP for one minute");
      return false;
    }
    here.action("MSIExec is Not running");
    return true;
  });
}

}  // namespace assistant
