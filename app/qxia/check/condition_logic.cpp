#include "app/qxia/check/condition_logic.h"

#include <algorithm>

#include "base/numbers.h"
#include "base/operating_systems.h"
#include "base/text.h"
#include "exec/condition_rules.h"
#include "exec/versions.h"

namespace qxia::check {
namespace {

using assistant::EqualIgnoringCase;
using assistant::OperatingSystem;
using assistant::OperatingSystems;

Systems Bit(std::size_t index) {
  return 1U << index;
}

template <class Matches>
Systems SystemsThat(Matches matches) {
  Systems systems = 0;
  for (std::size_t index = 0; index < OperatingSystems().size(); ++index)
    if (matches(OperatingSystems()[index])) systems |= Bit(index);
  return systems;
}

bool NamesSystem(const ConditionFact& fact, const OperatingSystem& system) {
  if (fact.isQuoted) return assistant::Contains(fact.condition.operand, system.olderKeyword);
  const std::vector<std::string> keywords = assistant::Split(fact.condition.operand, '|');
  return std::any_of(keywords.begin(), keywords.end(), [&](const std::string& keyword) {
    return assistant::Trim(assistant::LowerCase(assistant::WithoutQuotes(keyword))) == system.keyword;
  });
}

}  // namespace

Systems AllSystems() {
  return Bit(OperatingSystems().size() + 1) - 1;
}

Systems SystemsWith64Bits() {
  return SystemsThat([](const OperatingSystem& system) { return std::string(system.name) == "Windows 2003"; }) |
         Bit(OperatingSystems().size());
}

Systems SystemsWithoutStartup() {
  return SystemsThat([](const OperatingSystem& system) { return std::string(system.name) == "Windows NT 3.51"; });
}

std::string KeywordOf(const ComponentFact& component, const ConditionFact& fact) {
  const std::string& name = fact.condition.name;
  if (name.empty() || assistant::IsRunOnUninstall(fact.condition)) return name.empty() ? "" : "runonuninstall";
  if (component.isOlder && !fact.isQuoted) return "";
  const char* keyword =
      component.isOlder ? assistant::OlderKeywordOf(name) : assistant::KeywordOf(assistant::LowerCase(name));
  return keyword == nullptr ? "" : keyword;
}

bool IsOutcome(const ComponentFact& component, const ConditionFact& fact) {
  return fact.isQuoted && !fact.condition.name.empty() && KeywordOf(component, fact).empty();
}

bool IsProductVersion(const ComponentFact& component, const ConditionFact& fact) {
  return !fact.isQuoted && !fact.condition.name.empty() && KeywordOf(component, fact).empty();
}

Systems AdmittedBy(const ComponentFact& component, const ConditionFact& fact) {
  if (KeywordOf(component, fact) != "os") return AllSystems();
  const Systems named = SystemsThat([&](const OperatingSystem& system) { return NamesSystem(fact, system); });
  return fact.condition.op == "<>" ? AllSystems() & ~named : named;
}

bool IsReplaced(const ComponentFact& component, const ConditionFact& fact) {
  if (component.isOlder || fact.condition.name.empty()) return false;
  return std::any_of(component.conditions.begin(), component.conditions.end(), [&](const ConditionFact& other) {
    return &other > &fact && EqualIgnoringCase(other.condition.name, fact.condition.name);
  });
}

Systems AdmittedSystems(const ComponentFact& component) {
  Systems admitted = AllSystems();
  for (const ConditionFact& fact : component.conditions)
    if (!IsReplaced(component, fact)) admitted &= AdmittedBy(component, fact);
  return admitted;
}

bool AsksForSystems(const ComponentFact& component) {
  return std::any_of(component.conditions.begin(), component.conditions.end(),
                     [&](const ConditionFact& fact) { return KeywordOf(component, fact) == "os"; });
}

std::string VersionOperand(const ConditionFact& fact) {
  return assistant::Trim(assistant::WithoutQuotes(fact.condition.operand));
}

std::optional<std::vector<int>> VersionNumbers(const std::string& version) {
  std::vector<int> numbers;
  for (const std::string& part : assistant::VersionParts(version)) {
    const auto number = assistant::WholeInteger(part);
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  return numbers;
}

int CompareVersions(const std::vector<int>& a, const std::vector<int>& b) {
  for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
    const int difference = (i < a.size() ? a[i] : 0) - (i < b.size() ? b[i] : 0);
    if (difference != 0) return difference;
  }
  return 0;
}

std::vector<std::string> QuotedTexts(const std::string& text) {
  std::vector<std::string> texts;
  const std::vector<std::string> parts = assistant::Split(text, '"');
  for (std::size_t i = 1; i + 1 < parts.size(); i += 2) texts.push_back(parts[i]);
  return texts;
}

}  // namespace qxia::check
