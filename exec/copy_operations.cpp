#include "exec/copy_operations.h"

#include "base/error_handler.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/copy_files.h"
#include "exec/msi_queries.h"
#include "exec/version_folders.h"
#include "exec/versions.h"

namespace {

namespace CopyResult {
constexpr std::int16_t Failed = -1;
constexpr std::int16_t GoOn = 0;
constexpr std::int16_t AlreadyInstalled = 1;
constexpr std::int16_t NewerOnServer = 2;
constexpr std::int16_t Copied = 3;
}  // namespace CopyResult

void LogAlreadyThere(Run& run) {
  run.log.Log("StartCopyOp", 0,
              "Version " + run.component.productVersion + " of component " + run.component.name +
                  " is already installed, or a newer version of this component is already installed, component will "
                  "not install");
}

bool SameOrNewerIsInstalled(Run& run) {
  const InstalledProduct* installed = FindInstalledProduct(run, run.component.productCode);
  return installed != nullptr && !IsNewerVersion(run, run.component.productVersion, installed->version);
}

std::int16_t CopyAsInstallation(Run& run, CopyTargets& targets) {
  UseDefaultTarget(run, targets, "CopyOpRoot");
  if (CopyOpOneExistingVersionIsNewer(run, ComponentValue(run, Value::Path), targets)) {
    LogAlreadyThere(run);
    return CopyResult::NewerOnServer;
  }
  run.log.Log("StartCopyOp", 0, "Executing CopyOp to path " + targets.first());
  const bool copied = DoCopyOp(run, targets);
  run.log.Log("StartCopyOp", 0, "Finished CopyOp");
  return copied ? CopyResult::Copied : CopyResult::Failed;
}

std::int16_t CopyAndInstallFromThere(Run& run, std::string& installPath, CopyTargets& targets) {
  UseDefaultTarget(run, targets, "CopyOpHold");
  // Without a target the file to run would be looked for in whatever folder is the current one.
  if (!DoCopyOp(run, targets) || targets.first().empty()) return CopyResult::Failed;
  const std::string install = ComponentValue(run, Value::Install);
  const std::string copy = CopyDestination(run, targets.first(), targets.appendPath);
  installPath = IsFullPath(install) ? install : Joined(copy, install);
  return CopyResult::GoOn;
}

std::int16_t CarryOut(Run& run, char code, std::string& installPath, CopyTargets& targets) {
  if (code == '\0') return CopyResult::GoOn;
  if (run.verbose) run.log.Log("StartCopyop", 0, std::string("CopyOp is ") + code);
  if (code != '1' && SameOrNewerIsInstalled(run)) {
    LogAlreadyThere(run);
    return CopyResult::AlreadyInstalled;
  }
  if (code == '1') return CopyAsInstallation(run, targets);
  return code == '2' ? CopyAndInstallFromThere(run, installPath, targets) : CopyResult::GoOn;
}

}  // namespace

std::string NumberedTarget(int number) {
  return "CopyOpTarget" + std::to_string(number);
}

std::string CopyTargetListKey(const std::string& componentKey) {
  return componentKey + "\\CopyOpTargetList";
}

bool ReadIniCopyOps(Run& run, std::vector<std::string>& targets, const std::string& section,
                    const std::string& iniFile) {
  targets.clear();
  return GuardedAndShown(run, "ReadIniCopyOps", [&] {
    for (int number = 1;; ++number) {
      const std::string target = modINI::GetIniString(run, section, NumberedTarget(number), "", iniFile, true);
      run.log.Log("ReadIniCopyOps", 0, "Found Copy target " + target);
      if (target.empty()) return !targets.empty();
      targets.push_back(target);
    }
  });
}

void ReadRegCopyOps(Run& run, CopyTargets& targets, const std::string& componentKey) {
  GuardedAndShown(run, "ReadRegCopyOps", [&] {
    const std::string list = CopyTargetListKey(componentKey);
    targets = {};
    targets.appendPath = !modRegistry::RegKeyExists(run, list, "");
    if (targets.appendPath) {
      const std::string target = modRegistry::ReadOrEmpty(run, componentKey, "CopyOpTarget");
      targets.folders = {IsNotGiven(target) ? std::string() : target};
      return;
    }
    for (int number = 1;; ++number) {
      const std::string target = modRegistry::RegRead(run, list, NumberedTarget(number));
      run.log.Log("ReadRegCopyOps", 0, "Found Registry Copy target " + target);
      if (target.empty()) return;
      targets.folders.push_back(target);
    }
  });
}

std::int16_t StartCopyOp(Run& run, std::string& installPath, CopyTargets& targets) {
  std::int16_t result = CopyResult::GoOn;
  try {
    run.window.Status("Doing Copy operations");
    result = CarryOut(run, CopyCode(run), installPath, targets);
    if (run.verbose && (result == CopyResult::GoOn || result == CopyResult::Copied)) {
      run.log.Log("StartCopyop", 0, "Install set to " + installPath);
    }
  } catch (const std::exception& failure) {
    // What was not copied must not be run either.
    result = CopyResult::Failed;
    LogFailure(run, "StartCopyop", failure, !run.silent);
  }
  return result;
}

char CopyCode(Run& run) {
  const std::string code = Trim(GivenComponentValue(run, "CopyOp"));
  return IsNotGiven(code) ? '\0' : code.back();
}

void UseDefaultTarget(Run& run, CopyTargets& targets, const char* productValue) {
  if (!targets.first().empty()) return;
  const std::string root = modRegistry::ReadOrEmpty(run, ProductKey(run), productValue);
  targets = {{IsNotGiven(root) ? std::string() : root}, true};
}

std::string CopyDestination(Run& run, const std::string& target, bool appendPath) {
  if (!appendPath) return Normalised(target);
  // Of a component's folder given in full only its name can follow a root.
  const std::string path = ComponentValue(run, Value::Path);
  return Normalised(Joined(target, IsFullPath(path) ? LastElement(path) : path));
}
