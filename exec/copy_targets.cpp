#include "exec/copy_targets.h"

#include "base/paths.h"
#include "base/procedure.h"
#include "base/registry.h"
#include "base/text.h"

namespace assistant {

std::string NumberedTarget(int number) {
  return ComponentValue::CopyOpTarget + std::to_string(number);
}

std::vector<std::string> ReadIniCopyOps(const modINI::IniFile& ini, const std::string& section) {
  const Procedure here(ini.log, "ReadIniCopyOps");
  const auto read = [&] {
    std::vector<std::string> targets;
    for (int number = 1;; ++number) {
      const std::string target = modINI::GetIniString(ini, section, NumberedTarget(number), "");
      here.action("Found Copy target " + target);
      if (target.empty()) return targets;
      targets.push_back(target);
    }
  };
  return here.guard(read, Shown::UnlessSilent);
}

CopyTargets ReadRegCopyOps(const Services& services, const Component& component) {
  const Procedure here(services.log, "ReadRegCopyOps");
  CopyTargets targets;
  const auto read = [&] {
    platform::RegistryReader& registry = services.machine.registry();
    const std::string list = CopyTargetListKey(component.key);
    targets.appendPath = !modRegistry::RegKeyExists(registry, list, "");
    if (targets.appendPath) {
      targets.folders = {Given(component.copyTarget)};
      return;
    }
    for (int number = 1;; ++number) {
      const std::string target = modRegistry::RegRead(registry, list, NumberedTarget(number));
      here.action("Found Registry Copy target " + target);
      if (target.empty()) return;
      targets.folders.push_back(target);
    }
  };
  if (const auto failure = here.failureOf(read, Shown::UnlessSilent)) {
    throw here.failure("The copy targets of component " + component.name + " could not be read: " + *failure);
  }
  return targets;
}

CopyTargets WithDefaultTarget(const ProductRecord& record, const CopyTargets& targets, const RecordValue& root) {
  if (!targets.first().empty()) return targets;
  return {{Given(record.read(root))}, true};
}

std::string CopyDestination(const Component& component, const std::string& target, bool appendPath) {
  if (!appendPath) return Normalised(target);
  // Of a component's folder given in full only its name can follow a root.
  const std::string& path = component.path;
  return Normalised(Joined(target, IsFullPath(path) ? LastElement(path) : path));
}

char CopyCodeOf(const Component& component) {
  const std::string code = Given(Trim(component.copyOp));
  return code.empty() ? CopyCode::None : code.back();
}

}  // namespace assistant
