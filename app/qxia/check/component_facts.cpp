// The facts of a disc's components, pre-install actions and shares.
#include <algorithm>

#include "app/qxia/check/media_model.h"
#include "base/component.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/coded_paths.h"
#include "exec/copy_targets.h"

namespace qxia::check {
namespace {

using assistant::Joined;
using assistant::Normalised;

constexpr const char* Actions = "Actions";
constexpr const char* PreInstallActions = "PreInstallActions";

bool IsUsableComponentName(const std::string& name) {
  return !name.empty() && assistant::modINI::ValidStr(name) && !assistant::Contains(name, "\\") &&
         name.size() <= assistant::modRegistry::LongestName;
}

/// The component ini on the disc; nothing where it lies elsewhere or the package root is not known.
std::optional<std::string> IniPathOf(const Disc& disc, const std::string& component, const std::string& entry) {
  if (assistant::IsFullPath(entry)) return disc.onDisc(entry);
  const assistant::CodedPath coded =
      assistant::Contains(entry, "(") ? assistant::TakeApart(entry) : assistant::CodedPath{};
  const std::string inner = coded.inner.empty() ? component + ".ini" : coded.inner;
  switch (coded.code) {
    case assistant::PathCode::CdRom:
    case assistant::PathCode::Floppy:
      return Normalised(inner);
    case assistant::PathCode::Current:
    case assistant::PathCode::AppIniFolder:
      return Normalised(Joined(disc.applicationFolder, inner));
    case assistant::PathCode::Registry:
      return std::nullopt;
    default:
      return disc.packageRoot ? std::optional(Normalised(Joined(*disc.packageRoot, entry))) : std::nullopt;
  }
}

std::optional<std::string> FolderOnDisc(const Disc& disc, const std::string& path) {
  if (assistant::IsFullPath(path)) return disc.onDisc(path);
  return disc.packageRoot ? std::optional(Normalised(Joined(*disc.packageRoot, path))) : std::nullopt;
}

void ReadFolder(const Disc& disc, ComponentFact& component, const std::string& iniPath) {
  const std::string given = component.value("Path");
  const std::string& entry = component.entry.name;
  const bool isRelative = !assistant::IsFullPath(entry) && !assistant::Contains(entry, "(");
  component.path = !given.empty() ? Normalised(given) : assistant::FolderPart(isRelative ? Normalised(entry) : iniPath);
  component.folder = given.empty() && !isRelative ? assistant::FolderPart(iniPath) : FolderOnDisc(disc, component.path);
}

void ReadPackageOf(ComponentFact& component) {
  try {
    component.package = ReadPackage(component.found.host);
  } catch (const PackageError& broken) {
    component.packageDefect = broken.reason();
  }
}

void ReadFile(const Disc& disc, ComponentFact& component) {
  component.install = assistant::Given(component.value("Install"));
  if (component.install.empty()) return;
  component.kind = assistant::KindOf(component.install);
  if (assistant::IsFullPath(component.install)) {
    component.file = disc.onDisc(component.install);
  } else if (component.folder) {
    component.file = Normalised(Joined(*component.folder, component.install));
  }
  if (!component.file) return;
  component.found = disc.files.look(*component.file);
  if (component.found.isFile() && assistant::IsPackage(assistant::KindByEnding(component.install)))
    ReadPackageOf(component);
}

ConditionFact FactOf(const std::string& text, int line, bool isOlder) {
  ConditionFact fact{assistant::SplitConditionLine(text), text, line, isOlder && assistant::Contains(text, "\"")};
  if (fact.condition.op.empty() || fact.condition.name.empty()) {
    fact.condition = {};
  } else if (isOlder) {
    fact.condition = assistant::ParseOlderCondition(text);
  }
  return fact;
}

/// As the program reads them: one "Condition" for all, else the numbers up to the first gap.
void ReadConditions(ComponentFact& component) {
  const std::string key = assistant::ComponentValue::OlderCondition;
  if (const IniEntry* single = FindEntry(*component.section, key)) {
    component.isOlder = assistant::Contains(single->value, "\"");
    const std::vector<std::string> pieces = assistant::Split(single->value, ',');
    if (pieces.front().size() < 2 && !component.isOlder) return;
    for (const std::string& piece : pieces)
      if (!assistant::IsNotGiven(assistant::Trim(piece)))
        component.conditions.push_back(FactOf(piece, single->line, component.isOlder));
    return;
  }
  for (int number = 1;; ++number) {
    const IniEntry* entry = FindEntry(*component.section, key + std::to_string(number));
    if (entry == nullptr || entry->value.empty()) return;
    if (!assistant::IsNotGiven(entry->value)) component.conditions.push_back(FactOf(entry->value, entry->line, false));
  }
}

char CopyCodeOf(const ComponentFact& fact) {
  assistant::Component component;
  component.copyOp = fact.value("CopyOp");
  return assistant::CopyCodeOf(component);
}

void ReadComponent(Disc& disc, ComponentFact& component) {
  const auto path = IniPathOf(disc, component.name, component.entry.name);
  if (!path) return;
  component.isLookedFor = true;
  component.iniFile = disc.files.look(*path);
  component.ini = disc.source(component.iniFile);
  component.section = component.ini == nullptr ? nullptr : component.ini->section(component.name);
  if (component.section == nullptr) return;
  component.copyCode = CopyCodeOf(component);
  ReadFolder(disc, component, *path);
  ReadFile(disc, component);
  ReadConditions(component);
}

bool IsListed(const MediaModel& model, const std::string& name) {
  const auto components = model.components();
  return std::any_of(components.begin(), components.end(), [&](const ComponentFact* component) {
    return assistant::EqualIgnoringCase(component->name, name);
  });
}

}  // namespace

std::string ComponentFact::value(const std::string& key, const std::string& otherwise) const {
  const IniEntry* entry = section == nullptr ? nullptr : FindEntry(*section, key);
  return entry == nullptr ? otherwise : entry->value;
}

void ReadComponents(MediaModel& model, Disc& disc) {
  const IniSection* actions = disc.product->section(Actions);
  if (actions == nullptr) return;
  int place = static_cast<int>(model.components().size());
  std::map<std::string, bool> listed;
  for (const IniEntry& entry : actions->entries) {
    if (!entry.hasEquals) continue;
    using Why = PassedOverEntry::Why;
    const std::string lower = assistant::LowerCase(entry.key);
    if (!IsUsableComponentName(entry.key)) {
      disc.passedOver.push_back({Why::BadName, entry.key, entry.line});
    } else if (listed.contains(lower) || (&disc != &model.discs.front() && IsListed(model, entry.key))) {
      disc.passedOver.push_back({Why::Doubled, entry.key, entry.line});
    } else if (entry.value.empty()) {
      disc.passedOver.push_back({Why::Empty, entry.key, entry.line});
    } else {
      ComponentFact component;
      component.name = entry.key;
      component.place = place++;
      component.disc = &disc;
      component.listedOn = entry.line;
      component.entry = assistant::ParseActionEntry(entry.value);
      ReadComponent(disc, component);
      disc.components.push_back(component);
    }
    listed[lower] = true;
  }
}

void ReadActions(const MediaModel& model, Disc& disc) {
  const IniSection* list = disc.product->section(PreInstallActions);
  // Actions belong to the disc that the product begins with.
  if (list == nullptr || &disc != &model.discs.front()) return;
  for (const IniEntry& entry : list->entries) {
    if (assistant::Trim(entry.text).empty()) continue;
    ActionFact action;
    action.name = assistant::ParseActionEntry(entry.text).name;
    action.listedOn = entry.line;
    action.section = disc.product->section(action.name + "_" + model.productName);
    const IniEntry* install = action.section == nullptr ? nullptr : FindEntry(*action.section, "Install");
    action.install = install == nullptr ? "" : assistant::Given(install->value);
    if (!action.install.empty()) {
      action.file = assistant::IsFullPath(action.install)
                        ? disc.onDisc(action.install)
                        : std::optional(Normalised(Joined(disc.productFolder, action.install)));
      if (action.file) action.found = disc.files.look(*action.file);
      if (action.file && !action.found.isFile() && disc.files.look(*action.file + ".exe").isFile())
        action.found = disc.files.look(*action.file + ".exe");
    }
    disc.actions.push_back(action);
  }
}

void ReadShares(Disc& disc) {
  disc.sharesFile = disc.source(disc.files.look(Joined(disc.applicationFolder, "Config\\Shares.csv")));
  if (disc.sharesFile == nullptr) return;
  int number = 0;
  for (const std::string& line : disc.sharesFile->lines()) {
    ++number;
    const std::string text = assistant::Replace(line, "\r", "");
    if (assistant::Trim(text).empty() || text.front() == ';') continue;
    disc.shares.push_back({assistant::ParseShareLine(text), number});
  }
}

}  // namespace qxia::check
