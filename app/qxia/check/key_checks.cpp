// QX105 to QX117, QX119, QX120: sections and keys.
#include <algorithm>
#include <cctype>
#include <map>
#include <set>

#include "app/qxia/check/checks.h"
#include "app/qxia/check/known_keys.h"
#include "base/paths.h"
#include "base/record_keys.h"
#include "base/registry.h"
#include "base/text.h"

namespace qxia::check {
namespace {

using assistant::EqualIgnoringCase;
using assistant::LowerCase;

/// An ini file, and all that it is.
struct IniRole {
  const SourceIni* file = nullptr;
  bool isApplication = false;
  bool isProduct = false;
  std::vector<const ComponentFact*> components;
  std::vector<const ActionFact*> actions;

  bool is(IniKind kind) const {
    if (kind == IniKind::Application) return isApplication;
    return kind == IniKind::Product ? isProduct : !components.empty();
  }
};

std::vector<IniRole> RolesOf(const Disc& disc) {
  std::map<const SourceIni*, IniRole> roles;
  if (disc.application != nullptr) roles[disc.application].isApplication = true;
  if (disc.product != nullptr) roles[disc.product].isProduct = true;
  for (const ActionFact& action : disc.actions) roles[disc.product].actions.push_back(&action);
  for (const ComponentFact& component : disc.components)
    if (component.ini != nullptr) roles[component.ini].components.push_back(&component);
  std::vector<IniRole> list;
  for (auto& [file, role] : roles) {
    role.file = file;
    if (file->state() == SourceIni::State::Read) list.push_back(role);
  }
  return list;
}

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

bool IsIndented(const std::string& line) {
  return !line.empty() && IsBlank(line.front()) && line.find_first_not_of(" \t") != std::string::npos;
}

/// A comment that was meant for a key: "Remote=...".
bool IsRemKey(const std::string& line, bool linesCount) {
  if (!assistant::StartsWithIgnoringCase(line, "rem") || line.size() < 4) return false;
  const auto next = static_cast<unsigned char>(line[3]);
  const bool goesOn = std::isalnum(next) != 0 || next == '_' || next == '=';
  return goesOn && (linesCount || assistant::Contains(line, "="));
}

/// The checks of one file. What a finding explains is not told again as something that is missing.
class KeyCheck {
 public:
  KeyCheck(const IniRole& role, Findings& findings) : role_(role), file_(*role.file), findings_(findings) {}

  void run() {
    checkComments();
    for (const IniSection& section : file_.sections()) checkSection(section);
    checkMissing();
  }

 private:
  using Kinds = std::vector<IniKind>;

  Kinds kinds() const {
    Kinds kinds;
    for (const IniKind kind : {IniKind::Application, IniKind::Product, IniKind::Component})
      if (role_.is(kind)) kinds.push_back(kind);
    return kinds;
  }

  bool isComponent(const std::string& section) const {
    return std::any_of(role_.components.begin(), role_.components.end(),
                       [&](const ComponentFact* component) { return EqualIgnoringCase(component->name, section); });
  }

  bool isAction(const std::string& section) const {
    return std::any_of(role_.actions.begin(), role_.actions.end(), [&](const ActionFact* action) {
      return action->section != nullptr && EqualIgnoringCase(action->section->name, section);
    });
  }

  const ListSection* listOf(const std::string& section) const {
    for (const ListSection& list : ListSections())
      if (role_.is(list.ini) && EqualIgnoringCase(list.section, section)) return &list;
    return nullptr;
  }

  /// The section under which the table of known keys has this one.
  std::string tableName(const std::string& section) const {
    if (isComponent(section)) return ComponentSection;
    return isAction(section) ? ActionSection : section;
  }

  std::vector<std::string> knownSections() const {
    std::vector<std::string> names;
    for (const KnownKey& known : KnownKeys())
      if (role_.is(known.ini) && known.section[0] != '\0' && known.section[0] != '*') names.emplace_back(known.section);
    for (const ListSection& list : ListSections())
      if (role_.is(list.ini)) names.emplace_back(list.section);
    for (const ComponentFact* component : role_.components) names.push_back(component->name);
    for (const ActionFact* action : role_.actions)
      if (action->section != nullptr) names.push_back(action->section->name);
    return names;
  }

  bool isKnownSection(const std::string& section) const {
    const std::vector<std::string> names = knownSections();
    return std::any_of(names.begin(), names.end(), [&](const auto& name) { return EqualIgnoringCase(name, section); });
  }

  const KnownKey* knownKey(const std::string& section, const std::string& key) const {
    for (const IniKind kind : kinds())
      if (const KnownKey* known = FindKnownKey(kind, tableName(section), key)) return known;
    return nullptr;
  }

  void explain(const std::string& section, const std::string& key) {
    explained_.insert(LowerCase(section) + "\n" + LowerCase(key));
  }

  void checkComments() {
    std::string section;
    int number = 0;
    for (const std::string& line : file_.lines()) {
      ++number;
      if (line.find('\r') != std::string::npos) hasLoneReturn_ = true;
      if (!line.empty() && line.front() == '[') section = line.substr(1, line.find(']') - 1);
      const ListSection* list = listOf(section);
      const bool linesCount = list != nullptr && !list->holdsKeys;
      if (IsRemKey(line, linesCount)) {
        const std::string key = assistant::Trim(line.substr(0, line.find('=')));
        findings_.add(105, file_, number, Told(key) + " begins with rem, so the line is a comment.");
      }
    }
  }

  void checkSection(const IniSection& section) {
    const bool isFirst = section.line == 0 || file_.section(section.name) == &section;
    if (!isFirst)
      findings_.add(112, file_, section.line, "Section [" + section.name + "] stands twice: this one is never read.");
    const bool isKnown = section.line == 0 || isKnownSection(section.name);
    if (!isKnown) tellUnknownSection(section);
    if (isFirst && isKnown) checkEntries(section);
  }

  void tellUnknownSection(const IniSection& section) {
    std::vector<std::string> missing = knownSections();
    std::erase_if(missing, [&](const std::string& name) { return file_.section(name) != nullptr; });
    const std::string nearest = NearestWord(section.name, missing);
    // The component or action that looks for the section tells of it.
    if (isComponent(nearest) || (!role_.components.empty() && nearest.empty() && lacksComponentSection())) return;
    if (isNearAction(section.name)) return;
    explainedSections_.insert(LowerCase(nearest));
    const bool isOpen = section.name.starts_with('[');
    findings_.add(!nearest.empty() && isNeeded(nearest) ? 121 : 108, file_, section.line,
                  isOpen ? "The header " + section.name + " has no closing bracket: nobody reads its section."
                         : "Nobody reads a section [" + section.name + "].",
                  nearest.empty() ? "Take it out." : "Write [" + nearest + "].");
  }

  /// Whether nothing works without a section that this file does not have.
  bool isNeeded(const std::string& section) const {
    const std::span<const KnownKey> known = KnownKeys();
    const bool holdsVitalKey = std::any_of(known.begin(), known.end(), [&](const KnownKey& key) {
      return role_.is(key.ini) && key.need == KeyNeed::Vital && EqualIgnoringCase(key.section, section);
    });
    return holdsVitalKey || EqualIgnoringCase(section, "Actions");
  }

  bool lacksComponentSection() const {
    return std::any_of(role_.components.begin(), role_.components.end(),
                       [](const ComponentFact* component) { return component->section == nullptr; });
  }

  bool isNearAction(const std::string& section) const {
    return std::any_of(role_.actions.begin(), role_.actions.end(), [&](const ActionFact* action) {
      return action->section == nullptr && assistant::StartsWithIgnoringCase(section, action->name);
    });
  }

  void checkEntries(const IniSection& section) {
    const ListSection* list = listOf(section.name);
    bool belongsElsewhere = false;
    for (const IniEntry& entry : section.entries) {
      if (assistant::Trim(entry.text).empty()) continue;
      if (IsIndented(entry.text)) {
        belongsElsewhere = tellIndented(section, list, entry) || belongsElsewhere;
      } else if (!belongsElsewhere && (list == nullptr || list->holdsKeys)) {
        checkEntry(section, list, entry);
      }
    }
  }

  /// True for a header: what follows belongs to a section that is not read.
  bool tellIndented(const IniSection& section, const ListSection* list, const IniEntry& entry) {
    const std::string text = entry.text.substr(entry.text.find_first_not_of(" \t"));
    const bool linesCount = list != nullptr && !list->holdsKeys;
    // In a section of keys a comment is as good behind a blank.
    if (text.front() == ';' && !linesCount && !entry.hasEquals) return false;
    findings_.add(107, file_, entry.line,
                  "The line begins with a blank, so " + Told(text) + " is not read as it is meant.");
    if (text.front() == '[') {
      explainedSections_.insert(LowerCase(text.substr(1, text.find(']') - 1)));
      return true;
    }
    explain(section.name, assistant::Trim(text.substr(0, text.find('='))));
    return false;
  }

  void checkEntry(const IniSection& section, const ListSection* list, const IniEntry& entry) {
    if (!entry.hasEquals)
      return findings_.add(120, file_, entry.line, Told(entry.text) + " is no key=value and is passed over.");
    if (!entry.key.empty() && IsBlank(entry.key.back())) {
      const std::string key = assistant::Trim(entry.key.substr(0, entry.key.find_last_not_of(" \t") + 1));
      explain(section.name, key);
      return findings_.add(106, file_, entry.line,
                           "A blank stands before the equals sign: key " + Told(key) + " is not found.",
                           "Write " + key + "=" + entry.value);
    }
    const bool isActions = EqualIgnoringCase(section.name, "Actions") && list != nullptr;
    if (!isActions && FindEntry(section, entry.key) != &entry)
      return findings_.add(111, file_, entry.line,
                           "Key " + entry.key + " stands twice in [" + section.name + "]: the first counts.");
    if (list == nullptr) checkKey(section, entry);
  }

  void checkKey(const IniSection& section, const IniEntry& entry) {
    const KnownKey* known = section.line == 0 ? nullptr : knownKey(section.name, entry.key);
    if (known == nullptr) return tellUnknownKey(section, entry);
    const std::string& value = entry.value;
    if (value.size() > assistant::modRegistry::LongestText && isRecorded(*known)) {
      findings_.add(115, file_, entry.line,
                    "The value of " + entry.key + " has " + std::to_string(value.size()) + " characters.",
                    "Shorten it to " + std::to_string(assistant::modRegistry::LongestText) + " characters.");
    }
    const bool isFalse = assistant::IsNotGiven(value) || EqualIgnoringCase(value, "false");
    if (known->isTruth && !isFalse && !assistant::IsTrue(value))
      findings_.add(119, file_, entry.line, entry.key + "=" + value + " counts as false.");
  }

  static bool isRecorded(const KnownKey& key) {
    return key.ini == IniKind::Component || (key.ini == IniKind::Application && std::string(key.key) != "LogFilePath");
  }

  void tellUnknownKey(const IniSection& section, const IniEntry& entry) {
    if (const std::string home = homeOf(entry.key); !home.empty()) {
      explain(home, entry.key);
      const std::string where = section.line == 0 ? "before the first section" : "in [" + section.name + "]";
      return findings_.add(110, file_, entry.line, "Nobody looks for " + entry.key + " " + where + ".",
                           "Move it to " + home + ".");
    }
    std::vector<std::string> names;
    for (const KnownKey& known : KnownKeys())
      if (role_.is(known.ini) && EqualIgnoringCase(known.section, tableName(section.name)))
        names.emplace_back(known.key);
    std::erase_if(names, [&](const std::string& name) { return FindEntry(section, name) != nullptr; });
    const std::string nearest = NearestWord(entry.key, names);
    explain(section.name, nearest);
    const KnownKey* meant = nearest.empty() ? nullptr : knownKey(section.name, nearest);
    const bool isNeeded = meant != nullptr && meant->need == KeyNeed::Vital && !isOnlyCopied(section.name);
    findings_.add(isNeeded ? 122 : 109, file_, entry.line,
                  "Nobody reads a key " + entry.key + " in [" + section.name + "].",
                  nearest.empty() ? "Take it out." : "Write " + nearest + ".");
  }

  bool isOnlyCopied(const std::string& section) const {
    return std::any_of(role_.components.begin(), role_.components.end(), [&](const ComponentFact* component) {
      return EqualIgnoringCase(component->name, section) && !component->isRun();
    });
  }

  /// Where the key is read, in words; "" where nobody knows it.
  std::string homeOf(const std::string& key) const {
    std::string elsewhere;
    for (const KnownKey& known : KnownKeys()) {
      const bool isIt = EqualIgnoringCase(known.key, key) || (known.isNumbered && NumberOf(key, known.key) > 0);
      if (!isIt || known.section[0] == '*') continue;
      if (role_.is(known.ini))
        return std::string("[") + (known.section[0] == '\0' ? role_.components.front()->name : known.section) + "]";
      // Other tools may keep keys of their own beside a component's.
      if (!role_.components.empty() || !elsewhere.empty() || known.ini == IniKind::Component) continue;
      const char* file = known.ini == IniKind::Product ? "product ini" : "application ini";
      elsewhere = std::string("[") + known.section + "] of the " + file;
    }
    return elsewhere;
  }

  void checkMissing() {
    if (hasLoneReturn_) return;
    for (const KnownKey& known : KnownKeys()) {
      if (known.need == KeyNeed::Optional || !role_.is(known.ini)) continue;
      if (known.section[0] != '\0') {
        checkMissing(known, known.section);
        continue;
      }
      for (const ComponentFact* component : role_.components)
        if (component->section != nullptr) checkMissing(known, component->name, component->isRun());
    }
  }

  void checkMissing(const KnownKey& known, const std::string& section, bool isRun = true) {
    const IniEntry* entry = file_.find(section, known.key);
    const bool isVital = known.need == KeyNeed::Vital && isRun;
    const bool isMissing = entry == nullptr || (isVital && assistant::IsNotGiven(entry->value));
    const std::string key = LowerCase(section) + "\n" + LowerCase(known.key);
    const std::string told = "[" + LowerCase(section) + "]\n" + LowerCase(known.key);
    if (!isMissing || explained_.contains(key) || explained_.contains(told) ||
        explainedSections_.contains(LowerCase(section)))
      return;
    findings_.add(
        isVital ? 113 : 114, file_, file_.lineOf(section, known.key),
        std::string("Section [") + section + "] has no " + (entry == nullptr ? "key " : "value of key ") + known.key +
            ".",
        isVital ? ""
                : std::string("Write ") + known.key + "=" + (known.isTruth ? "False" : "N/A") + ", or what is meant.");
  }

  const IniRole& role_;
  const SourceIni& file_;
  Findings& findings_;
  std::set<std::string> explained_;
  std::set<std::string> explainedSections_;
  bool hasLoneReturn_ = false;
};

void CheckNames(const Disc& disc, Findings& findings) {
  if (disc.application != nullptr) {
    const std::string name = disc.application->value("Product", "Name");
    if (!assistant::Trim(name).empty() && !assistant::IsUsableName(name))
      findings.add(116, *disc.application, disc.application->lineOf("Product", "Name"),
                   "The product's name " + Told(name) + " holds a character that no folder name may hold.");
  }
  for (const PassedOverEntry& entry : disc.passedOver)
    if (entry.why == PassedOverEntry::Why::BadName)
      findings.add(117, *disc.product, entry.line, Told(entry.name) + " is no name for a component.");
}

}  // namespace

void CheckKeys(const MediaModel& media, Findings& findings) {
  for (const Disc& disc : media.discs) {
    for (const IniRole& role : RolesOf(disc)) KeyCheck(role, findings).run();
    CheckNames(disc, findings);
  }
}

}  // namespace qxia::check
