#include "core/store_component.h"

#include <map>
#include <utility>
#include <vector>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/discovery.h"
#include "env/shares.h"
#include "exec/action_entry.h"
#include "exec/conditions.h"
#include "exec/copy_operations.h"
#include "exec/msi_queries.h"

namespace {

constexpr const char* Source = "modQXInstallationMain.StoreComponentData";

/// What the component's ini and package say, before any of it is written.
struct ComponentData {
  std::string name;
  std::string iniPath;
  std::string path;  ///< as recorded: relative to the package root, or in full
  std::map<std::string, std::string> keys;
  std::string packageName = NotApplicable;
  std::string packageVersion = NotApplicable;
  std::string packageCode = NotApplicable;
  std::string copyTarget;
  std::vector<std::string> copyTargetList;
  std::vector<std::string> conditions;
};

struct IniKey {
  const char* key;
  const char* defaultText;
  bool required;
};

constexpr IniKey iniKeys[] = {
    {"Install", MissingValue, true},     {"CommandLine", MissingValue, true}, {"Transform", NotApplicable, false},
    {"Upgrade", MissingValue, true},     {"CopyOp", MissingValue, true},      {"Cleanup", "false", false},
    {"MachineType", MissingValue, true}, {"Cost", MissingValue, true},        {"UninstallCommandLine", "", false},
    {"AbortOnFail", "False", false},
};

std::string ReadKey(Run& run, const ComponentData& data, const IniKey& key) {
  return modINI::GetIniString(run, data.name, key.key, key.defaultText, data.iniPath, !key.required);
}

/// The component's folder as recorded: its own key, or else the folder part of its entry in [Actions].
std::string ComponentPath(Run& run, const ComponentData& data, const std::string& actionPath) {
  const std::string given = modINI::GetIniString(run, data.name, "Path", "", data.iniPath, true);
  if (!given.empty()) return Normalised(given);
  const bool relative = Normalised(Joined(run.packageRoot, actionPath)) == data.iniPath;
  return relative ? FolderPart(Normalised(actionPath)) : FolderPart(data.iniPath);
}

std::string FullPath(const Run& run, const ComponentData& data) {
  const std::string& install = data.keys.at("Install");
  if (IsFullPath(install)) return install;
  const std::string folder = IsFullPath(data.path) ? data.path : Joined(run.packageRoot, data.path);
  return Joined(Normalised(folder), install);
}

void ReadPackage(Run& run, ComponentData& data) {
  const std::string package = FullPath(run, data);
  if (!EndsWithIgnoringCase(package, "msi")) return;
  modMSI::GetMSIData(run, package, data.packageName, data.packageVersion, data.packageCode);
}

void ReadCopyTargets(Run& run, ComponentData& data) {
  try {
    const std::string target = modINI::GetIniString(run, data.name, "CopyOpTarget", "", data.iniPath, true);
    data.copyTarget = ResolveQXSharePath(run, target);
    if (!target.empty()) run.log.Log(Source, 0, "Copyop target resolved to " + data.copyTarget);
    ReadIniCopyOps(run, data.copyTargetList, data.name, data.iniPath);
    for (std::string& folder : data.copyTargetList) {
      folder = ResolveQXSharePath(run, folder);
      run.log.Log(Source, 0, "Copyop target resolved to " + folder);
    }
  } catch (const Error&) {
    run.log.Log(Source, 0, "Error reading CopyOp data", false, EntryType::Warning);
  }
}

/// The name becomes a registry key of its own.
void RequireUsableName(const Run& run, const std::string& component) {
  if (!Contains(component, "\\")) return;
  throw Error(GeneralError,
              "The component name " + component + " holds a backslash. Correct it in section [Actions] of " +
                  run.productIniPath + ".",
              Source);
}

/// Only a code with parentheses is one here; anything else is a path.
std::string ComponentIni(Run& run, const std::string& component, const std::string& given) {
  if (Contains(given, "(")) return ResolveFile(run, given, run.packageRoot, component + ".ini");
  return Normalised(IsFullPath(given) ? given : Joined(run.packageRoot, given));
}

ComponentData ReadComponent(Run& run, const std::string& component, const ActionEntry& action) {
  ComponentData data;
  data.name = component;
  RequireUsableName(run, component);
  data.iniPath = ComponentIni(run, component, action.name);
  if (!run.fso.FileExists(data.iniPath)) throw modErrorBase::MakeError(6081, {data.iniPath}, Source);
  for (const IniKey& key : iniKeys) data.keys[key.key] = ReadKey(run, data, key);
  data.path = ComponentPath(run, data, action.name);
  ReadPackage(run, data);
  ReadCopyTargets(run, data);
  modMain::ReadIniConditions(run, component, data.conditions, data.iniPath);
  run.log.Log(Source, 0, "All component ini file entries read");
  return data;
}

/// The conditions as they are recorded, and the one that is none: whether the component takes part in an uninstall.
struct RecordedConditions {
  std::string older;
  std::vector<std::pair<std::string, std::string>> list;
  bool runOnUninstall = true;
};

void AddCondition(Run& run, const std::string& component, const std::string& line, RecordedConditions& recorded) {
  const Condition condition = SplitConditionLine(line);
  if (condition.op.empty() || condition.name.empty()) {
    run.log.Log(Source, 0,
                "Condition \"" + line + "\" of component " + component +
                    " is not of the form name, operator, value and is passed over. Correct it in its ini file.",
                false, EntryType::Warning);
    return;
  }
  if (EqualIgnoringCase(condition.name, "runonuninstall")) {
    recorded.runOnUninstall = !ContainsIgnoringCase(condition.operand, "false");
    return;
  }
  const std::string data = condition.op == "=" ? condition.operand : "(" + condition.op + ")" + condition.operand;
  for (auto& [name, value] : recorded.list) {
    if (!EqualIgnoringCase(name, condition.name)) continue;
    run.log.Log(Source, 0,
                "Component " + component + " has two conditions named " + condition.name + "; the last one counts.",
                false, EntryType::Warning);
    value = data;
    return;
  }
  recorded.list.emplace_back(condition.name, data);
}

/// Quoted operands mark the older notation, which is kept as the one text that it was.
RecordedConditions RecordConditions(Run& run, const ComponentData& data) {
  const std::string single = modINI::GetIniString(run, data.name, "Condition", "", data.iniPath, true);
  RecordedConditions recorded;
  if (Contains(single, "\"")) {
    recorded.older = single;
    return recorded;
  }
  for (const std::string& line : data.conditions) AddCondition(run, data.name, line, recorded);
  return recorded;
}

void WriteConditions(Run& run, const std::string& key, const RecordedConditions& conditions) {
  if (!conditions.older.empty()) modRegistry::RegWrite(run, key, "Condition", conditions.older);
  for (const auto& [name, text] : conditions.list) {
    modRegistry::RegWrite(run, key + "\\ConditionList", name, text);
  }
}

void WriteValues(Run& run, const std::string& key, const ComponentData& data, int index, bool runOnUninstall) {
  const auto& keys = data.keys;
  const std::pair<const char*, std::string> values[] = {
      {Value::Install, keys.at("Install")},
      {Value::ProductName, data.packageName},
      {Value::ProductVersion, data.packageVersion},
      {Value::ProductCode, data.packageCode},
      {"IniPath", data.iniPath},
      {Value::Path, data.path},
      {"CommandLine", keys.at("CommandLine")},
      {"Transform", keys.at("Transform")},
      {"Upgrade", keys.at("Upgrade")},
      {"CopyOp", keys.at("CopyOp")},
      {"Cleanup", TrueOrFalse(IsTrue(keys.at("Cleanup")))},
      {"CopyOpTarget", data.copyTarget},
      {"MachineType", keys.at("MachineType")},
      {"Cost", keys.at("Cost")},
  };
  for (const auto& [name, text] : values) modRegistry::RegWrite(run, key, name, text);
  modRegistry::WriteNumber(run, key, Value::SequenceNumber, index * SequenceStep);
  modRegistry::RegWrite(run, key, "UninstallCommandLine", keys.at("UninstallCommandLine"));
  modRegistry::RegWrite(run, key, "RunOnUninstall", TrueOrFalse(runOnUninstall));
  modRegistry::RegWrite(run, key, Value::AbortOnFail, TrueOrFalse(IsTrue(keys.at("AbortOnFail"))));
}

void WriteCopyTargetList(Run& run, const std::string& key, const std::vector<std::string>& targets) {
  int number = 0;
  for (const std::string& target : targets) {
    modRegistry::RegWrite(run, key + "\\CopyOpTargetList", "CopyOpTarget" + std::to_string(++number), target);
  }
}

void WriteRecord(Run& run, const ComponentData& data, int index) {
  const std::string key = ComponentKey(run.productName, data.name);
  modRegistry::DeleteIfThere(run, key);
  run.log.Log(Source, 0, "Saving data to " + key);
  const RecordedConditions conditions = RecordConditions(run, data);
  WriteConditions(run, key, conditions);
  WriteValues(run, key, data, index, conditions.runOnUninstall);
  WriteCopyTargetList(run, key, data.copyTargetList);
  run.log.Log(Source, 0, "Component registry entries written");
}

}  // namespace

namespace modQXInstallationMain {

bool StoreComponentData(Run& run, const std::string& component, int index) {
  return Guarded(run, Source, [&] {
    run.log.Log(Source, 0, "Processing component " + component + ", index number " + std::to_string(index));
    const std::string entry = modINI::GetIniString(run, "Actions", component, "", run.productIniPath, true);
    if (entry.empty()) {
      run.log.Log(Source, 6080, modErrorBase::GetErrorText(6080, {component, "Actions", run.productIniPath}), false,
                  EntryType::Warning);
      return true;
    }
    WriteRecord(run, ReadComponent(run, component, ParseActionEntry(entry)), index);
    return true;
  });
}

}  // namespace modQXInstallationMain
