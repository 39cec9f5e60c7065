#include "core/store_component.h"

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/ini.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/component_data.h"
#include "exec/action_entry.h"
#include "exec/copy_operations.h"

namespace {

constexpr const char* Source = "modQXInstallationMain.StoreComponentData";
constexpr int FileMissing = 6081;

/// Writes one text of the record, if it can be read back from there.
void WriteText(Run& run, const ComponentData& data, const std::string& key, const std::string& name,
               const std::string& text) {
  RequireStorable(text, name, data.name, data.iniPath);
  modRegistry::RegWrite(run, key, name, text);
}

void WriteConditions(Run& run, const ComponentData& data, const std::string& key) {
  if (!data.conditions.older.empty()) WriteText(run, data, key, "Condition", data.conditions.older);
  for (const auto& [name, text] : data.conditions.list) WriteText(run, data, key + "\\ConditionList", name, text);
}

/// Without its number the component would not be known to the loop.
void WriteSequenceNumber(Run& run, const std::string& key, int index) {
  modRegistry::WriteNumber(run, key, Value::SequenceNumber, index * SequenceStep);
  if (modRegistry::RegKeyExists(run, key, Value::SequenceNumber)) return;
  throw modErrorBase::MakeError(6087, {"HKLM\\" + key, Value::SequenceNumber}, Source);
}

void WriteValues(Run& run, const ComponentData& data, const std::string& key, int index) {
  const std::pair<const char*, std::string> values[] = {
      {Value::Install, data.install},
      {Value::ProductName, data.packageName},
      {Value::ProductVersion, data.packageVersion},
      {Value::ProductCode, data.packageCode},
      {"IniPath", data.iniPath},
      {Value::Path, data.path},
      {"CommandLine", data.commandLine},
      {"Transform", data.transform},
      {"Upgrade", data.upgrade},
      {"CopyOp", data.copyOp},
      {"Cleanup", TrueOrFalse(data.cleanup)},
      {"CopyOpTarget", data.copyTarget},
      {"MachineType", data.machineType},
      {"Cost", data.cost},
  };
  for (const auto& [name, text] : values) WriteText(run, data, key, name, text);
  WriteSequenceNumber(run, key, index);
  WriteText(run, data, key, "UninstallCommandLine", data.uninstallCommandLine);
  WriteText(run, data, key, "RunOnUninstall", TrueOrFalse(data.conditions.runOnUninstall));
  WriteText(run, data, key, Value::AbortOnFail, TrueOrFalse(data.abortOnFail));
}

void WriteCopyTargetList(Run& run, const ComponentData& data, const std::string& key) {
  int number = 0;
  for (const std::string& target : data.copyTargetList) {
    WriteText(run, data, CopyTargetListKey(key), NumberedTarget(++number), target);
  }
}

void WriteRecord(Run& run, const ComponentData& data, int index) {
  const std::string key = ComponentKey(run.productName, data.name);
  modRegistry::DeleteIfThere(run, key);
  run.log.Log(Source, 0, "Saving data to " + key);
  WriteConditions(run, data, key);
  WriteValues(run, data, key, index);
  WriteCopyTargetList(run, data, key);
  run.log.Log(Source, 0, "Component registry entries written");
}

}  // namespace

namespace modQXInstallationMain {

StoredComponent StoreComponentData(Run& run, const std::string& component, int index) {
  try {
    run.log.Log(Source, 0, "Processing component " + component + ", index number " + std::to_string(index));
    const std::string entry = modINI::GetIniString(run, "Actions", component, "", run.productIniPath, true);
    if (entry.empty()) {
      run.log.Log(Source, 6080, modErrorBase::GetErrorText(6080, {component, "Actions", run.productIniPath}), false,
                  EntryType::Warning);
      return StoredComponent::Stored;
    }
    WriteRecord(run, ReadComponent(run, component, ParseActionEntry(entry).name), index);
    return StoredComponent::Stored;
  } catch (const Error& failure) {
    LogFailure(run, Source, failure);
    return failure.number() == FileMissing ? StoredComponent::IniMissing : StoredComponent::Failed;
  }
}

}  // namespace modQXInstallationMain
