#include "core/store_component.h"

#include "base/procedure.h"
#include "base/registry.h"
#include "core/component_data.h"
#include "exec/action_entry.h"
#include "exec/copy_targets.h"

namespace assistant {
namespace {

constexpr int FileMissing = 6081;

/// Writes a text under a key below the component's, if it can be read back from there.
void WriteBelow(const Run& run, const Component& component, const std::string& key, const std::string& name,
                const std::string& text) {
  RequireStorable(text, name, component.name, component.iniPath);
  modRegistry::RegWrite(run.services, key, name, text);
}

void WriteConditions(const Run& run, const ComponentData& data) {
  const Component& component = data.component;
  if (!data.olderConditions.empty()) {
    WriteBelow(run, component, component.key, ComponentValue::OlderCondition, data.olderConditions);
  }
  for (const auto& [name, text] : data.conditions) {
    WriteBelow(run, component, ConditionListKey(component.key), name, text);
  }
}

void WriteCopyTargetList(const Run& run, const ComponentData& data) {
  int number = 0;
  for (const std::string& target : data.copyTargets) {
    WriteBelow(run, data.component, CopyTargetListKey(data.component.key), NumberedTarget(++number), target);
  }
}

void Store(const Run& run, const Procedure& here, const modINI::IniEntry& entry, int index) {
  here.action("Processing component " + entry.key + ", index number " + std::to_string(index));
  if (entry.value.empty()) return here.warn(6080, {entry.key, "Actions", run.product.inis.product});
  ComponentData data = ReadComponent(run, here, entry.key, ParseActionEntry(entry.value).name);
  data.component.sequenceNumber = index * SequenceStep;
  modRegistry::DeleteIfThere(run.services, data.component.key);
  here.action("Saving data to " + data.component.key);
  WriteConditions(run, data);
  WriteRecord(run.services, here, data.component);
  WriteCopyTargetList(run, data);
  here.action("Component registry entries written");
}

/// The name is that of a key and of a section: with a bracket in it, neither could be found.
StoredComponent RefuseName(const Run& run, const Procedure& here, const std::string& component) {
  const std::string text = "\"" + component + "\" in section [Actions] of " + run.product.inis.product +
                           " is no name for a component. Give it a name without [ and ].";
  here.error(text);
  return {StoredComponent::End::BadName, text};
}

}  // namespace

StoredComponent StoreComponentData(const Run& run, const modINI::IniEntry& entry, int index) {
  const Procedure here(run.services.log, "modQXInstallationMain.StoreComponentData");
  if (!modINI::ValidStr(entry.key)) return RefuseName(run, here, entry.key);
  try {
    Store(run, here, entry, index);
    return {};
  } catch (const Error& failure) {
    // The run is told of an ini file that is missing in other words than of other failures.
    here.tell(failure);
    const bool missing = failure.number() == FileMissing;
    return {missing ? StoredComponent::End::IniMissing : StoredComponent::End::Failed, failure.text()};
  }
}

}  // namespace assistant
