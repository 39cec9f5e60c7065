#include "core/install_component.h"

#include <string>

#include "base/error_texts.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/component_command.h"
#include "exec/conditions.h"
#include "exec/copy_operations.h"
#include "exec/disk_space.h"
#include "exec/machine_types.h"
#include "exec/msi_run.h"
#include "exec/outcome.h"
#include "exec/process.h"

namespace {

constexpr const char* Source = "modQXInstallationMain.StartInstall";

/// Records the failure and consults what the component and the product say about going on.
ComponentEnd Fail(Run& run, const std::string& ending) {
  SetProductResult(run, false, "Installation of " + run.component.name + " failed" + ending);
  const bool aborts = IsTrue(ComponentValue(run, Value::AbortOnFail)) ||
                      IsTrue(modRegistry::ReadOrEmpty(run, ProductKey(run), Value::AbortOnFail));
  if (!aborts) return ComponentEnd::Failed;
  // The source is spelled so.
  run.log.Log("startInstall", 0, "Aborting Installation");
  run.aborted = true;
  return ComponentEnd::Aborted;
}

bool MayBeInstalled(Run& run) {
  if (!modMain::CheckMachineType(run)) {
    run.log.Log("StartInstall", 0,
                "Component " + run.component.name + " is not meant for this machine type (" + run.serverType +
                    "), component will not be installed",
                false, EntryType::Warning);
    return false;
  }
  return modMain::CheckConditions(run);
}

void WaitForMsiexec(Run& run, RunType type) {
  constexpr const char* check = "Check for multiple MSIExec processes: ";
  if (type == RunType::Package) {
    run.log.Log("StartInstall", 0, std::string(check) + "Starting Check...");
    OneMSIExec(run);
  } else {
    run.log.Log("StartInstall", 0, std::string(check) + "Not Required!");
  }
}

ComponentEnd FileIsMissing(Run& run, const std::string& file) {
  run.log.Log(Source, 6081, modErrorBase::GetErrorText(6081, {file}), false, EntryType::Error);
  modRegistry::RegWrite(run, ProductsKey, Value::ProcessReturn, "Fail");
  modRegistry::RegWrite(run, run.component.key, Value::ProcessReturn, "Fail");
  modRegistry::RegWrite(run, run.component.key, Value::Message, "File not found : " + file);
  return Fail(run, " (installation file could not be found)");
}

ComponentEnd TypeIsUnknown(Run& run, const std::string& file) {
  run.log.Log("StartInstall", 0, "Unable to determine run-type for " + run.component.name);
  run.log.Log(Source, 6091, modErrorBase::GetErrorText(6091, {file}), false, EntryType::Error);
  return Fail(run, "");
}

/// What running the component came to. A package that is installed already is not judged.
enum class RunEnd { Failed, ToBeJudged, AlreadyInstalled };

RunEnd RunPackage(Run& run, const std::string& file) {
  const bool repair = IsTrue(ComponentValue(run, "Upgrade"));
  PackageRun told;
  modQXInstallationMain::ExecuteMSI(run, MsiexecArguments(run, file), repair, FolderPart(file), told);
  if (told.alreadyInstalled) return RunEnd::AlreadyInstalled;
  run.log.Log("StartInstall", 0, "Executing " + told.command + " returned " + std::to_string(told.exitCode));
  return RunEnd::ToBeJudged;
}

RunEnd RunProgramOrScript(Run& run, const std::string& file) {
  const bool succeeded =
      modMain::ExecuteInstall(run, ProgramCommandLine(run, file), false, FolderPart(file), Extension(file));
  return succeeded ? RunEnd::ToBeJudged : RunEnd::Failed;
}

ComponentEnd JudgeComponent(Run& run, RunEnd end, const std::string& file) {
  if (end == RunEnd::AlreadyInstalled) return ComponentEnd::Done;
  const bool passed = modQXInstallationMain::CheckSuccess(run, Extension(file));
  // Three endings tell the three kinds of failure apart.
  if (end == RunEnd::Failed) return Fail(run, "");
  if (!passed) return Fail(run, ".");
  if (!run.installSuccess) return Fail(run, " ");
  return ComponentEnd::Done;
}

ComponentEnd RunFile(Run& run, const std::string& file) {
  const RunType type = RunTypeOf(file);
  WaitForMsiexec(run, type);
  run.window.StatusLine("Checking other options");
  run.log.Log("StartInstall", 0, "Type of file is " + Extension(file));
  modRegistry::RegWrite(run, run.component.key, Value::ProcessReturn, "");
  modRegistry::RegWrite(run, ProductsKey, Value::ProcessReturn, "");
  if (!run.fso.FileExists(file)) return FileIsMissing(run, file);
  modRegistry::RegWrite(run, InstallationKey, Value::CurrentComponentPath, FolderPart(file));
  if (type == RunType::Unknown) return TypeIsUnknown(run, file);
  const RunEnd end = type == RunType::Package ? RunPackage(run, file) : RunProgramOrScript(run, file);
  modRegistry::RegWrite(run, run.component.key, Value::Message, ComponentValue(run, Value::Message));
  return JudgeComponent(run, end, file);
}

}  // namespace

ComponentEnd InstallComponent(Run& run) {
  run.installSuccess = true;
  if (!MayBeInstalled(run)) return ComponentEnd::HeldBack;
  if (!CheckDiskSpace(run)) return Fail(run, " disk space check.");
  const std::string& install = run.component.install;
  std::string file = IsFullPath(install) ? install : Joined(run.component.path, install);
  CopyTargets targets;
  ReadRegCopyOps(run, targets, run.component.key);
  const std::int16_t copied = StartCopyOp(run, file, targets);
  if (copied < 0) return Fail(run, " a copying operation.");
  return copied > 0 ? ComponentEnd::Done : RunFile(run, file);
}
