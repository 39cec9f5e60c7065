#include "core/install_component.h"

#include <optional>
#include <string>

#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"
#include "core/end_wanted.h"
#include "env/install_type.h"
#include "env/uninstall_component.h"
#include "exec/captions.h"
#include "exec/component_command.h"
#include "exec/conditions.h"
#include "exec/copy_operations.h"
#include "exec/disk_space.h"
#include "exec/file_kinds.h"
#include "exec/folder_access.h"
#include "exec/machine_types.h"
#include "exec/msi_run.h"
#include "exec/outcome.h"
#include "exec/process.h"
#include "exec/product_result.h"

namespace assistant {
namespace {

/// A component on its way through the steps.
struct Installation {
  Run& run;
  const Procedure& here;
  const Component& component;
  const InstalledProducts& installed;  ///< what Windows Installer had before
  std::string file = {};               ///< to run
  const FileKind* kind = nullptr;      ///< of that file; null for one that cannot be run
  bool started = true;                 ///< the file was run, and its exit code is none of a failure
  bool isJudged = true;                ///< not so a package that is installed already
};

/// Records the failure and consults what the component and the product say about going on.
ComponentEnd Fail(const Installation& at, const std::string& ending) {
  SetProductResult(at.run, false, "Installation of " + at.component.name + " failed" + ending);
  // What the component itself changed of its record counts.
  const bool aborts = IsTrue(ReadNow(at.run.machine.registry(), at.component, ComponentValue::AbortOnFail)) ||
                      at.run.record().isTrue(Value::AbortOnFail);
  if (!aborts) return ComponentEnd::Failed;
  at.here.action("Aborting Installation");
  at.run.state.aborted = true;
  return ComponentEnd::Aborted;
}

// The steps. Each returns nothing when the component goes on to the next one, or how it ended.
using End = std::optional<ComponentEnd>;

End CheckWhetherMeant(Installation& at) {
  if (CheckMachineType(at.run, at.component)) {
    const Conditions conditions = CheckConditions({at.run, at.installed}, at.component);
    // What was not checked is not held back: nobody would miss it.
    if (conditions == Conditions::CannotBeRead) return Fail(at, " as its conditions could not be read.");
    return conditions == Conditions::Hold ? End() : ComponentEnd::HeldBack;
  }
  at.here.warn("Component " + at.component.name + " is not meant for this machine type (" + at.run.facts.serverType +
               "), component will not be installed");
  return ComponentEnd::HeldBack;
}

End CheckRoom(Installation& at) {
  return CheckDiskSpace(at.run, at.component) ? End() : Fail(at, " disk space check.");
}

End Copy(Installation& at) {
  const std::string& install = at.component.install;
  const std::string file = IsFullPath(install) ? install : Joined(at.component.folder, install);
  const CopyEnd copy = StartCopyOp(at.run, at.component, at.installed, file);
  if (copy.is == CopyEnd::Is::Failed) {
    if (!copy.reason.empty()) SetProductResult(at.run, false, copy.reason);
    return Fail(at, " a copying operation.");
  }
  at.file = copy.file;
  return copy.is == CopyEnd::Is::Done ? ComponentEnd::Done : End();
}

/// A person's wish to end the run is honoured here as well (RunStops): the wait may have no end.
void RequireFreeMsiexec(const Run& run) {
  if (!OneMSIExec(run)) EndIfWanted(run.services);
}

End WaitForMsiexec(Installation& at) {
  constexpr const char* check = "Check for multiple MSIExec processes: ";
  at.kind = KindOf(at.file);
  at.here.action(std::string(check) + (IsPackage(at.kind) ? "Starting Check..." : "Not Required!"));
  if (IsPackage(at.kind)) RequireFreeMsiexec(at.run);
  return std::nullopt;
}

End RequireFile(Installation& at) {
  const Services& services = at.run.services;
  services.window.statusLine("Checking other options");
  at.here.action("Type of file is " + Extension(at.file));
  WriteNow(services, at.component, ComponentValue::ProcessReturn, "");
  at.run.record().write(Value::RunProcessReturn, "");
  // A component without a package root has no folder: its file is not that of the current one.
  if (IsFullPath(at.file) && services.fso.fileExists(at.file)) {
    at.run.record().write(Value::CurrentComponentPath, FolderPart(at.file));
    return std::nullopt;
  }
  at.here.error(6081, {at.file});
  at.run.record().write(Value::RunProcessReturn, "Fail");
  WriteNow(services, at.component, ComponentValue::ProcessReturn, "Fail");
  WriteNow(services, at.component, ComponentValue::Message, "File not found : " + at.file);
  return Fail(at, " (installation file could not be found)");
}

End RequireKnownKind(Installation& at) {
  if (at.kind != nullptr) return std::nullopt;
  at.here.action("Unable to determine run-type for " + at.component.name);
  at.here.error(6091, {at.file});
  return Fail(at, "");
}

End LookAtFolder(Installation& at) {
  WarnOfOpenFolder(at.run.machine.files(), at.here, at.component.name, FolderPart(at.file));
  return std::nullopt;
}

/// The older version of a package goes before the newer one comes; how that went is looked at no further. False when it
/// could not be tried.
bool UninstallOlder(const Run& run, const Procedure& here, const Component& component, const PackagePlan& plan) {
  return here.guard([&] {
    here.detail("This is a newer version (" + component.productVersion + ") so previous version (" +
                plan.installedVersion + ") will be uninstalled first");
    run.services.window.status(modLanguage::Text(modLanguage::Caption::Uninstalling) + component.displayName());
    InstallTypeKeeper installType(run.services, run.record());
    ExecuteUninstall(run, component, component.displayName(), OtherUsers::DoNotCount);
    installType.putBack();
    run.services.window.pump();
    here.action("Check for multiple MSIExec processes (Post Uninstall): Starting Check...");
    RequireFreeMsiexec(run);
    return true;
  });
}

End RunPackage(Installation& at) {
  if (!IsPackage(at.kind)) return std::nullopt;
  const Run& run = at.run;
  ResetComponentResult(run.services, at.component);
  run.services.window.statusLine("Proceeding with installation");
  const PackagePlan plan =
      PlanPackage(run.services.log, at.component, at.installed, MsiexecArguments(run, at.component, at.file));
  at.isJudged = plan.step != PackagePlan::Step::Skip;
  if (!at.isJudged) return std::nullopt;
  const bool ready = plan.step != PackagePlan::Step::ReplaceOlder || UninstallOlder(run, at.here, at.component, plan);
  const std::int32_t code = ready ? ExecuteMSI(run.services, at.component, plan, FolderPart(at.file)) : NotStarted;
  at.here.action("Executing " + plan.command + " returned " + std::to_string(code));
  return std::nullopt;
}

End RunProgramOrScript(Installation& at) {
  if (IsPackage(at.kind)) return std::nullopt;
  const ComponentCommand command{ProgramCommandLine(*at.kind, at.component, at.file), FolderPart(at.file),
                                 Extension(at.file)};
  at.started = ExecuteInstall(at.run.services, at.component, *at.kind, command);
  return std::nullopt;
}

End Judge(Installation& at) {
  const std::string message = ReadNow(at.run.machine.registry(), at.component, ComponentValue::Message);
  // One that is too long to be read stays where it is.
  if (!message.empty()) WriteNow(at.run.services, at.component, ComponentValue::Message, message);
  if (!at.isJudged) return ComponentEnd::Done;
  const Verdict verdict = CheckSuccess(at.run, at.component, *at.kind);
  // Three endings tell the three kinds of failure apart.
  if (!at.started) return Fail(at, "");
  if (verdict == Verdict::Failed) return Fail(at, ".");
  if (verdict == Verdict::Aborted) return Fail(at, " ");
  return ComponentEnd::Done;
}

constexpr End (*Steps[])(Installation&) = {CheckWhetherMeant, CheckRoom,    Copy,       WaitForMsiexec,     RequireFile,
                                           RequireKnownKind,  LookAtFolder, RunPackage, RunProgramOrScript, Judge};

}  // namespace

ComponentEnd InstallComponent(Run& run, const Procedure& here, const Component& component,
                              const InstalledProducts& installed) {
  Installation at{run, here, component, installed};
  for (const auto step : Steps) {
    if (const End end = step(at)) return *end;
  }
  return ComponentEnd::Done;
}

}  // namespace assistant
