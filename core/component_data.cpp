#include "core/component_data.h"

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/discovery.h"
#include "env/shares.h"
#include "exec/conditions.h"
#include "exec/copy_operations.h"
#include "exec/msi_queries.h"

namespace {

constexpr const char* Source = "modQXInstallationMain.StoreComponentData";

enum class Need { Required, Optional };

struct TextKey {
  const char* key;
  std::string ComponentData::*field;
  const char* defaultText;
  Need need;
};

constexpr TextKey textKeys[] = {
    {"Install", &ComponentData::install, MissingValue, Need::Required},
    {"CommandLine", &ComponentData::commandLine, MissingValue, Need::Required},
    {"Transform", &ComponentData::transform, NotApplicable, Need::Optional},
    {"Upgrade", &ComponentData::upgrade, MissingValue, Need::Required},
    {"CopyOp", &ComponentData::copyOp, MissingValue, Need::Required},
    {"MachineType", &ComponentData::machineType, MissingValue, Need::Required},
    {"Cost", &ComponentData::cost, MissingValue, Need::Required},
    {"UninstallCommandLine", &ComponentData::uninstallCommandLine, "", Need::Optional},
};

std::string ReadKey(Run& run, const ComponentData& data, const char* key, const char* defaultText, Need need) {
  return modINI::GetIniString(run, data.name, key, defaultText, data.iniPath, need == Need::Optional);
}

bool ReadFlag(Run& run, const ComponentData& data, const char* key) {
  return IsTrue(ReadKey(run, data, key, "false", Need::Optional));
}

/// The name becomes a registry key of its own.
void RequireUsableName(const Run& run, const std::string& component) {
  if (!component.empty() && !Contains(component, "\\") && component.size() <= modRegistry::LongestName) return;
  throw Error(GeneralError,
              "\"" + component + "\" in section [Actions] of " + run.productIniPath +
                  " is no name for a component. Give it one to " + std::to_string(modRegistry::LongestName) +
                  " characters and no backslash.",
              Source);
}

/// Only a code with parentheses is one here; anything else is a path.
std::string ComponentIni(Run& run, const std::string& component, const std::string& entry) {
  if (Contains(entry, "(")) return ResolveFile(run, entry, run.packageRoot, component + ".ini");
  return Normalised(IsFullPath(entry) ? entry : Joined(run.packageRoot, entry));
}

/// The component's folder as recorded: its own key, or else the folder part of its entry in [Actions].
std::string ComponentPath(Run& run, const ComponentData& data, const std::string& entry) {
  const std::string given = ReadKey(run, data, "Path", "", Need::Optional);
  if (!given.empty()) return Normalised(given);
  const bool relative = Normalised(Joined(run.packageRoot, entry)) == data.iniPath;
  return FolderPart(relative ? Normalised(entry) : data.iniPath);
}

void ReadPackage(Run& run, ComponentData& data) {
  const std::string folder = IsFullPath(data.path) ? data.path : Joined(run.packageRoot, data.path);
  const std::string package = IsFullPath(data.install) ? data.install : Joined(Normalised(folder), data.install);
  if (!EndsWithIgnoringCase(package, "msi")) return;
  modMSI::GetMSIData(run, package, data.packageName, data.packageVersion, data.packageCode);
}

std::string ResolvedTarget(Run& run, const std::string& target) {
  const std::string resolved = ResolveQXSharePath(run, target);
  run.log.Log(Source, 0, "Copyop target resolved to " + resolved);
  return resolved;
}

void ReadCopyTargets(Run& run, ComponentData& data) {
  try {
    const std::string target = ReadKey(run, data, "CopyOpTarget", "", Need::Optional);
    if (!target.empty()) data.copyTarget = ResolvedTarget(run, target);
    ReadIniCopyOps(run, data.copyTargetList, data.name, data.iniPath);
    for (std::string& folder : data.copyTargetList) folder = ResolvedTarget(run, folder);
  } catch (const Error& failure) {
    LogFailure(run, Source, failure);
    run.log.Log(Source, 0, "Error reading CopyOp data", false, EntryType::Warning);
  }
}

void Warn(Run& run, const ComponentData& data, const std::string& what) {
  run.log.Log(Source, 0, "Section [" + data.name + "] of " + data.iniPath + ": " + what, false, EntryType::Warning);
}

void SetRunOnUninstall(ComponentData& data, const Condition& condition) {
  data.conditions.runOnUninstall = !ContainsIgnoringCase(condition.operand, "false");
}

void AddCondition(Run& run, ComponentData& data, const std::string& line) {
  if (IsNotGiven(line)) return;
  const Condition condition = SplitConditionLine(line);
  if (condition.op.empty() || condition.name.empty()) {
    Warn(run, data, "\"" + line + "\" is no condition and is passed over. Write name, operator, value.");
    return;
  }
  if (condition.name.size() > modRegistry::LongestName) {
    throw Error(GeneralError,
                "Section [" + data.name + "] of " + data.iniPath + ": shorten the name of condition " + line, Source);
  }
  if (IsRunOnUninstall(condition)) return SetRunOnUninstall(data, condition);
  const std::string text = condition.op == "=" ? condition.operand : "(" + condition.op + ")" + condition.operand;
  for (auto& [name, recorded] : data.conditions.list) {
    if (!EqualIgnoringCase(name, condition.name)) continue;
    Warn(run, data, "two conditions are named " + condition.name + "; the last one counts.");
    recorded = text;
    return;
  }
  data.conditions.list.emplace_back(condition.name, text);
}

/// Quoted operands mark the older notation, which is kept as the one text that it was.
void ReadConditions(Run& run, ComponentData& data) {
  std::vector<std::string> lines;
  modMain::ReadIniConditions(run, data.name, lines, data.iniPath);
  const std::string single = ReadKey(run, data, "Condition", "", Need::Optional);
  if (Contains(single, "\"")) {
    data.conditions.older = single;
    for (const std::string& field : Split(single, ',')) {
      const Condition condition = SplitConditionLine(field);
      if (IsRunOnUninstall(condition)) SetRunOnUninstall(data, condition);
    }
    return;
  }
  for (const std::string& line : lines) AddCondition(run, data, line);
}

}  // namespace

ComponentData ReadComponent(Run& run, const std::string& component, const std::string& entry) {
  RequireUsableName(run, component);
  ComponentData data;
  data.name = component;
  data.iniPath = ComponentIni(run, component, entry);
  if (!run.fso.FileExists(data.iniPath)) throw modErrorBase::MakeError(6081, {data.iniPath}, Source);
  for (const TextKey& row : textKeys) data.*row.field = ReadKey(run, data, row.key, row.defaultText, row.need);
  data.cleanup = ReadFlag(run, data, "Cleanup");
  data.abortOnFail = ReadFlag(run, data, Value::AbortOnFail);
  data.path = ComponentPath(run, data, entry);
  ReadPackage(run, data);
  ReadCopyTargets(run, data);
  ReadConditions(run, data);
  run.log.Log(Source, 0, "All component ini file entries read");
  return data;
}
