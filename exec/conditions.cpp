#include "exec/conditions.h"

#include <vector>

#include "base/procedure.h"
#include "base/registry.h"
#include "base/text.h"

namespace assistant {
namespace {

void CheckConditionList(const Surroundings& surroundings, const Procedure& here, const Component& component) {
  platform::RegistryReader& registry = surroundings.run.machine.registry();
  const std::string list = ConditionListKey(component.key);
  const std::vector<std::string> names = modRegistry::ValueNames(registry, list);
  if (names.empty() || names.front().empty()) return;
  for (const std::string& name : names) {
    const std::string data = modRegistry::RegRead(registry, list, name);
    here.action("Checking condition " + name + " = " + data);
    if (!data.empty()) RequireCondition(surroundings, here, ParseCondition(name, data));
  }
}

void CheckOlderCondition(const Surroundings& surroundings, const Procedure& here, const std::string& text) {
  Condition condition = ParseOlderCondition(text);
  if (IsRunOnUninstall(condition)) return;
  if (Contains(text, "\"")) {
    RequireOlderCondition(surroundings, here, condition);
  } else {
    condition.name = LowerCase(condition.name);
    RequireProductVersion(surroundings, here, condition);
  }
}

Conditions NotMet(const Procedure& here, const std::exception& failure) {
  here.warn(failure.what());
  here.action("Condition not met, component will not be installed");
  return modRegistry::IsOwnFailure(failure) ? Conditions::CannotBeRead : Conditions::DoNotHold;
}

}  // namespace

Conditions CheckConditions(const Surroundings& surroundings, const Component& component) {
  const Services& services = surroundings.run.services;
  const Procedure here(services.log, "CheckConditions");
  // What was told of a condition that could not be evaluated is told of one that does not hold: neither lets the
  // component be installed, and neither is a failure with a number.
  try {
    services.window.statusLine("Checking Conditions");
    const std::string older = ReadNow(services.machine.registry(), component, ComponentValue::OlderCondition);
    if (!older.empty()) {
      CheckLegacyConditionString(surroundings, older);
    } else {
      CheckConditionList(surroundings, here, component);
    }
  } catch (const std::exception& failure) {
    return NotMet(here, failure);
  }
  here.detail("All conditions met");
  services.window.status("Conditions OK");
  return Conditions::Hold;
}

void CheckLegacyConditionString(const Surroundings& surroundings, const std::string& conditions) {
  const Procedure here(surroundings.run.services.log, "CheckLegacyConditionString");
  here.detail("Condition found - " + conditions);
  if (conditions.empty() || EqualIgnoringCase(conditions, NotApplicable)) return;
  const std::vector<std::string> fields = Split(conditions, ',');
  here.detail("Number of conditions = " + std::to_string(fields.size()));
  int number = 0;
  for (const std::string& condition : fields) {
    here.detail("Condition " + std::to_string(++number) + ". " + condition);
    if (!Trim(condition).empty()) CheckOlderCondition(surroundings, here, condition);
  }
}

}  // namespace assistant
