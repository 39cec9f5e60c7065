#include "core/component_data.h"

#include <utility>

#include "base/code_page.h"
#include "base/file_system.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/discovery.h"
#include "exec/condition_text.h"
#include "exec/copy_targets.h"
#include "exec/csv.h"
#include "exec/file_kinds.h"
#include "exec/msi_queries.h"

namespace assistant {
namespace {

/// The name becomes a registry key of its own.
void RequireUsableName(const Procedure& here, const std::string& component, const std::string& productIni) {
  if (!component.empty() && !Contains(WithoutTrailBytes(component), "\\") &&
      component.size() <= modRegistry::LongestName)
    return;
  throw here.failure("\"" + component + "\" in section [Actions] of " + productIni +
                     " is no name for a component. Give it one to " + std::to_string(modRegistry::LongestName) +
                     " characters and no backslash.");
}

/// Only a code with parentheses is one here; anything else is a path.
std::string ComponentIni(const Run& run, const std::string& component, const std::string& entry) {
  const std::string& root = run.product.packageRoot;
  if (!Contains(entry, "("))
    return Normalised(IsFullPath(entry) ? run.services.fso.inFull(entry) : Joined(root, entry));
  return ResolveFile(run, entry, {root, run.product.inis.application, component + ".ini"});
}

/// The component's folder as recorded: its own key, or else the folder part of its entry in [Actions].
std::string ComponentPath(const Component& component, const std::string& entry, const std::string& root) {
  if (!component.path.empty()) return Normalised(component.path);
  const bool relative = Normalised(Joined(root, entry)) == component.iniPath;
  return FolderPart(relative ? Normalised(entry) : component.iniPath);
}

/// The file of a transform, or of each pair of machine type and file, with the paths that need a drive's current folder
/// made full.
std::string TransformInFull(clsFso& fso, std::string transform) {
  for (const std::string& field : CsvFields(transform)) {
    const std::string file = Trim(field.substr(field.find('=') + 1));
    transform = Replace(transform, file, fso.inFull(file));
  }
  return transform;
}

/// Behind a restart other folders are the drives' current ones.
void MakePathsFull(clsFso& fso, Component& component) {
  component.path = fso.inFull(component.path);
  component.install = fso.inFull(component.install);
  component.transform = TransformInFull(fso, component.transform);
}

void ReadPackage(const Run& run, Component& component) {
  const std::string folder =
      IsFullPath(component.path) ? component.path : Joined(run.product.packageRoot, component.path);
  const std::string package =
      IsFullPath(component.install) ? component.install : Joined(Normalised(folder), component.install);
  if (!IsPackage(KindByEnding(package))) return;
  const PackageData data = GetMSIData(run.services, package);
  component.productName = data.name;
  component.productVersion = data.version;
  component.productCode = data.code;
}

std::string ResolvedTarget(const Run& run, const Procedure& here, const std::string& target) {
  const std::string resolved = ResolveQXSharePath(run.shareResolver(), target);
  here.action("Copyop target resolved to " + resolved);
  return resolved;
}

void ReadCopyTargets(const Run& run, const Procedure& here, const modINI::IniFile& ini, ComponentData& data) {
  const std::string target = std::exchange(data.component.copyTarget, std::string());
  const auto failure = here.failureOf([&] {
    if (!target.empty()) data.component.copyTarget = ResolvedTarget(run, here, target);
    data.copyTargets = ReadIniCopyOps(ini, data.component.name);
    for (std::string& folder : data.copyTargets) folder = ResolvedTarget(run, here, folder);
  });
  if (failure) here.warn("Error reading CopyOp data");
}

void SetRunOnUninstall(Component& component, const Condition& condition) {
  component.runOnUninstall = TrueOrFalse(!ContainsIgnoringCase(condition.operand, "false"));
}

void AddCondition(const Procedure& here, ComponentData& data, const std::string& line) {
  if (IsNotGiven(line)) return;
  const std::string section = "Section [" + data.component.name + "] of " + data.component.iniPath + ": ";
  const Condition condition = SplitConditionLine(line);
  if (condition.op.empty() || condition.name.empty()) {
    return here.warn(section + "\"" + line + "\" is no condition and is passed over. Write name, operator, value.");
  }
  if (condition.name.size() > modRegistry::LongestName) {
    throw here.failure(section + "shorten the name of condition " + line);
  }
  if (IsRunOnUninstall(condition)) return SetRunOnUninstall(data.component, condition);
  const std::string text = condition.op == "=" ? condition.operand : "(" + condition.op + ")" + condition.operand;
  for (auto& [name, recorded] : data.conditions) {
    if (!EqualIgnoringCase(name, condition.name)) continue;
    here.warn(section + "two conditions are named " + condition.name + "; the last one counts.");
    recorded = text;
    return;
  }
  data.conditions.emplace_back(condition.name, text);
}

/// Quoted operands mark the older notation, which is kept as the one text that it was.
void ReadConditions(const Procedure& here, const modINI::IniFile& ini, ComponentData& data) {
  const std::vector<std::string> lines = ReadIniConditions(ini, data.component.name);
  const std::string single = modINI::GetIniString(ini, data.component.name, ComponentValue::OlderCondition, "");
  if (!Contains(single, "\"")) {
    for (const std::string& line : lines) AddCondition(here, data, line);
    return;
  }
  data.olderConditions = single;
  for (const std::string& field : Split(single, ',')) {
    const Condition condition = SplitConditionLine(field);
    if (IsRunOnUninstall(condition)) SetRunOnUninstall(data.component, condition);
  }
}

}  // namespace

ComponentData ReadComponent(const Run& run, const Procedure& here, const std::string& name, const std::string& entry) {
  RequireUsableName(here, name, run.product.inis.product);
  ComponentData data;
  Component& component = data.component;
  component.name = name;
  component.key = ComponentKey(run.product.name, name);
  component.iniPath = ComponentIni(run, name, entry);
  component.runOnUninstall = TrueOrFalse(true);
  // Without a package root, what is relative to it would be looked for in the current folder.
  if (!IsFullPath(component.iniPath) || !run.services.fso.fileExists(component.iniPath)) {
    throw here.failure(6081, {component.iniPath});
  }
  const modINI::IniFile ini = run.ini(component.iniPath);
  modINI::OpenIniFile(ini);  // one that cannot be read says nothing that could be recorded
  ReadFromIni(component, ini);
  MakePathsFull(run.services.fso, component);
  component.path = ComponentPath(component, entry, run.product.packageRoot);
  ReadPackage(run, component);
  ReadCopyTargets(run, here, ini, data);
  ReadConditions(here, ini, data);
  here.action("All component ini file entries read");
  return data;
}

}  // namespace assistant
