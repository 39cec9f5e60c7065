// QX601 to QX607: forced removal, and what an uninstall needs.
#include <algorithm>
#include <cctype>

#include "app/qxia/check/checks.h"
#include "app/qxia/check/condition_logic.h"
#include "app/qxia/check/machine_paths.h"
#include "base/paths.h"
#include "base/record_keys.h"
#include "base/text.h"
#include "exec/file_kinds.h"

namespace qxia::check {
namespace {

constexpr const char* ForceUninstall = "ForceUninstall";

void CheckForcedDelete(const SourceIni& ini, const IniEntry& entry, Findings& findings) {
  const std::string path = assistant::Normalised(assistant::Unquoted(entry.text));
  if (path.find_first_of("*?") != std::string::npos) {
    findings.add(603, ini, entry.line, "No file is called " + path + ": wildcards are not expanded.");
  } else if (!assistant::IsBelowRoot(path)) {
    findings.add(601, ini, entry.line, path + " is refused: it is not the full path of something below a root.");
  } else if (IsSystemFolder(path)) {
    findings.add(602, ini, entry.line, path + " belongs to the system.");
  }
}

bool IsProductCode(const std::string& code) {
  constexpr std::string_view pattern = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
  if (code.size() != pattern.size()) return false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool fits =
        pattern[i] == 'x' ? std::isxdigit(static_cast<unsigned char>(code[i])) != 0 : code[i] == pattern[i];
    if (!fits) return false;
  }
  return true;
}

void CheckForcedUninstall(const Disc& disc, const IniEntry& entry, Findings& findings) {
  const IniEntry* code = disc.product->find(ForceUninstall, entry.key);
  if (code == nullptr) {
    findings.add(604, *disc.application, entry.line, "The product ini has no product code for " + entry.key + ".");
  } else if (code->value.empty()) {
    findings.add(604, *disc.product, code->line, "The product code of " + entry.key + " is empty.");
  } else if (!IsProductCode(code->value)) {
    findings.add(605, *disc.product, code->line, code->value + " is no product code.");
  }
}

void CheckForcedLists(const Disc& disc, Findings& findings) {
  if (const IniSection* deletes = disc.application->section("ForceDelete"))
    for (const IniEntry& entry : deletes->entries)
      if (!entry.text.empty() && entry.text.front() != ' ' && entry.text.front() != '\t')
        CheckForcedDelete(*disc.application, entry, findings);
  // Without a product ini that can be read, that is what is told.
  if (disc.product == nullptr || disc.product->state() != SourceIni::State::Read) return;
  if (const IniSection* uninstalls = disc.application->section(ForceUninstall))
    for (const IniEntry& entry : uninstalls->entries)
      if (entry.hasEquals && !entry.key.empty()) CheckForcedUninstall(disc, entry, findings);
}

bool StaysOnUninstall(const ComponentFact& component) {
  return std::any_of(component.conditions.begin(), component.conditions.end(), [&](const ConditionFact& fact) {
    return KeywordOf(component, fact) == "runonuninstall" &&
           assistant::ContainsIgnoringCase(fact.condition.operand, "false");
  });
}

void CheckRemovable(const ComponentFact& component, Findings& findings) {
  const bool goesByItself = component.kind == nullptr || assistant::IsPackage(component.kind) || !component.isRun();
  if (goesByItself || !assistant::Given(component.value("UninstallCommandLine")).empty() || StaysOnUninstall(component))
    return;
  findings.add(606, *component.ini, component.lineOf("UninstallCommandLine"),
               "Nothing removes component " + component.name + " when the product is uninstalled.");
}

/// The file that an unquoted command of removal begins with, as far as its extension tells where that ends; "" for any
/// other command.
std::string UnquotedFile(const std::string& command) {
  if (!assistant::IsFullPath(command)) return "";
  for (std::size_t end = command.find(' ');; end = command.find(' ', end + 1)) {
    const std::string file = command.substr(0, end);
    if (file.find_first_of("/:*?\"<>|", 2) != std::string::npos) return "";
    if (assistant::KindOf(file) != nullptr) return file;
    if (end == std::string::npos) return "";
  }
}

void CheckQuoted(const ComponentFact& component, Findings& findings) {
  const std::string file = UnquotedFile(assistant::Given(component.value("UninstallCommandLine")));
  if (file.find(' ') == std::string::npos) return;
  const bool isProgram = assistant::KindOf(file)->runner == assistant::Runner::Itself;
  findings.add(607, *component.ini, component.lineOf("UninstallCommandLine"),
               file + " holds a blank and is not quoted: the system looks for " + file.substr(0, file.find(' ')) +
                   ".exe " + (isProgram ? "first." : "first, and cannot start a script (193)."));
}

}  // namespace

void CheckRemoval(const MediaModel& media, Findings& findings) {
  const Disc& first = media.discs.front();
  if (first.application != nullptr) CheckForcedLists(first, findings);
  const SourceIni* last = media.discs.back().product;
  if (last == nullptr || !assistant::IsTrue(last->value("Product", "CanUninstall"))) return;
  for (const ComponentFact* component : media.components())
    if (component->section != nullptr) {
      CheckRemovable(*component, findings);
      CheckQuoted(*component, findings);
    }
}

}  // namespace qxia::check
