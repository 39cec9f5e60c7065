#include "exec/conditions.h"

#include <algorithm>

#include "base/error_handler.h"
#include "base/ini.h"
#include "base/operating_systems.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/condition_rules.h"

namespace {

constexpr const char* Operators = "<=>";

bool IsOperator(char c) {
  return std::string_view(Operators).find(c) != std::string_view::npos;
}

void CheckConditionList(Run& run) {
  const std::string list = run.component.key + "\\ConditionList";
  const std::vector<std::string> names = modRegistry::ValueNames(run, list);
  if (names.empty() || names.front().empty()) return;
  for (const std::string& name : names) {
    const std::string data = modRegistry::RegRead(run, list, name);
    run.log.Log("CheckConditions", 0, "Checking condition " + name + " = " + data);
    if (!data.empty()) RequireCondition(run, ParseCondition(name, data));
  }
}

/// What was told of a condition that could not be evaluated is told of one that does not hold: neither lets the
/// component be installed.
bool NotMet(Run& run, const std::string& reason) {
  run.log.Log("CheckConditions", 0, reason, false, EntryType::Warning);
  run.log.Log("CheckConditions", 0, "Condition not met, component will not be installed");
  return false;
}

}  // namespace

Condition ParseCondition(const std::string& name, const std::string& data) {
  const std::string lower = LowerCase(name);
  const std::size_t close = data.find(')');
  const bool marked = data.size() > 1 && data[0] == '(' && IsOperator(data[1]);
  // A bracket that closes at the sixth character or later belongs to the operand.
  if (!marked || close > 4) return {lower, "=", data};
  return {lower, data.substr(1, close - 1), TrimLeft(data.substr(close + 1))};
}

bool IsRunOnUninstall(const Condition& condition) {
  return EqualIgnoringCase(condition.name, "runonuninstall");
}

Condition SplitConditionLine(const std::string& line) {
  const std::size_t first = line.find_first_of(Operators);
  if (first == std::string::npos) return {Trim(line), "", ""};
  const std::size_t behind = std::min(line.find_first_not_of(Operators, first), line.size());
  return {Trim(line.substr(0, first)), line.substr(first, behind - first), Trim(line.substr(behind))};
}

namespace modMain {

bool CheckConditions(Run& run) {
  try {
    run.window.StatusLine("Checking Conditions");
    const std::string older = ComponentValue(run, "Condition");
    if (!older.empty()) {
      CheckLegacyConditionString(run, older);
    } else {
      CheckConditionList(run);
    }
  } catch (const std::exception& failure) {
    return NotMet(run, failure.what());
  }
  if (run.verbose) run.log.Log("CheckConditions", 0, "All conditions met");
  run.window.Status("Conditions OK");
  return true;
}

bool ReadIniConditions(Run& run, const std::string& section, std::vector<std::string>& conditions,
                       const std::string& iniFile) {
  constexpr const char* source = "ReadIniConditions";
  conditions.clear();
  return Guarded(run, source, [&] {
    const std::string single = modINI::GetIniString(run, section, "Condition", MissingValue, iniFile, true);
    run.log.Log(source, 0, "Single condition string returned " + single);
    if (single != MissingValue) {
      const std::vector<std::string> pieces = Split(single, ',');
      run.log.Log(source, 0, "Condition string split into " + std::to_string(pieces.size()));
      if (pieces.front().size() >= 2) conditions = pieces;
      return !conditions.empty();
    }
    for (int number = 1;; ++number) {
      const std::string key = "Condition" + std::to_string(number);
      const std::string condition = modINI::GetIniString(run, section, key, "", iniFile, true);
      if (condition.empty()) break;
      conditions.push_back(condition);
    }
    run.log.Log(source, 0, "Found " + std::to_string(conditions.size()) + " conditions");
    return !conditions.empty();
  });
}

bool IsValidOS(Run& run, const std::string& keyword) {
  return Guarded(run, "modMain.IsValidOS", [&] {
    const std::string& name = SystemName(run);
    run.log.Log("IsValidOS", 0, "OS Check - System OS = " + name + ", Query OS = " + keyword);
    if (name == "0" && !keyword.empty())
      run.log.Log("modMain.IsValidOS", 0, "OS was not recognised", false, EntryType::Warning);
    const OperatingSystem* system = FindOperatingSystem(name);
    const bool matched = !keyword.empty() && system != nullptr && Trim(LowerCase(keyword)) == system->keyword;
    run.log.Log("IsValidOS", 0, matched ? "OS check matched" : "OS check did not match");
    return matched;
  });
}

}  // namespace modMain
