#include "exec/copy_operations.h"

#include "base/error_handler.h"
#include "base/ini.h"
#include "base/not_built.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"

namespace {

std::string NumberedTarget(int number) {
  return "CopyOpTarget" + std::to_string(number);
}

}  // namespace

bool ReadIniCopyOps(Run& run, std::vector<std::string>& targets, const std::string& section,
                    const std::string& iniFile) {
  targets.clear();
  return Guarded(run, "ReadIniCopyOps", [&] {
    for (int number = 1;; ++number) {
      const std::string target = modINI::GetIniString(run, section, NumberedTarget(number), "", iniFile, true);
      run.log.Log("ReadIniCopyOps", 0, "Found Copy target " + target);
      if (target.empty()) return !targets.empty();
      targets.push_back(target);
    }
  });
}

void ReadRegCopyOps(Run& run, CopyTargets& targets, const std::string& componentKey) {
  Guarded(run, "ReadRegCopyOps", [&] {
    const std::string list = componentKey + "\\CopyOpTargetList";
    targets.appendPath = !modRegistry::RegKeyExists(run, list, "");
    if (targets.appendPath) {
      targets.folders = {modRegistry::ReadOrEmpty(run, componentKey, "CopyOpTarget")};
      return;
    }
    targets.folders.clear();
    for (int number = 1;; ++number) {
      const std::string target = modRegistry::RegRead(run, list, NumberedTarget(number));
      run.log.Log("ReadRegCopyOps", 0, "Found Registry Copy target " + target);
      if (target.empty()) return;
      targets.folders.push_back(target);
    }
  });
}

std::int16_t StartCopyOp(Run& run, [[maybe_unused]] std::string& installPath, [[maybe_unused]] CopyTargets& targets) {
  run.window.Status("Doing Copy operations");
  const std::string code = Trim(GivenComponentValue(run, "CopyOp"));
  if (code.empty() || code.back() == '0') return 0;
  LogNothingDone(run, "StartCopyOp", "Copy operation of " + run.component.name);
  return -1;
}
