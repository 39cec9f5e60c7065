#include "exec/condition_text.h"

#include <algorithm>

#include "base/component.h"
#include "base/error.h"
#include "base/procedure.h"
#include "base/record_keys.h"
#include "base/text.h"

namespace assistant {
namespace {

constexpr const char* Operators = "<=>";

bool IsOperator(char c) {
  return std::string_view(Operators).find(c) != std::string_view::npos;
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

Condition ParseOlderCondition(const std::string& text) {
  const std::size_t first = text.find_first_of(Operators);
  if (first == std::string::npos) {
    throw Error(GeneralError, "Condition \"" + text + "\" holds none of <, = and >", "ParseOlderCondition");
  }
  const std::size_t last = text.find_last_of(Operators);
  Condition condition{Trim(text.substr(0, first)), Trim(text.substr(first, last - first + 1)),
                      Trim(text.substr(last + 1))};
  if (StartsWithIgnoringCase(condition.operand, "v")) condition.operand.erase(0, 1);
  return condition;
}

Condition SplitConditionLine(const std::string& line) {
  const std::size_t first = line.find_first_of(Operators);
  if (first == std::string::npos) return {Trim(line), "", ""};
  const std::size_t behind = std::min(line.find_first_not_of(Operators, first), line.size());
  return {Trim(line.substr(0, first)), line.substr(first, behind - first), Trim(line.substr(behind))};
}

bool IsRunOnUninstall(const Condition& condition) {
  return EqualIgnoringCase(condition.name, "runonuninstall");
}

std::vector<std::string> ReadIniConditions(const modINI::IniFile& ini, const std::string& section) {
  const Procedure here(ini.log, "ReadIniConditions");
  return here.guard([&]() -> std::vector<std::string> {
    const std::string key = ComponentValue::OlderCondition;
    const std::string single = modINI::GetIniString(ini, section, ComponentValue::OlderCondition, MissingValue);
    here.action("Single condition string returned " + single);
    if (single != MissingValue) {
      const std::vector<std::string> pieces = Split(single, ',');
      here.action("Condition string split into " + std::to_string(pieces.size()));
      return pieces.front().size() >= 2 ? pieces : std::vector<std::string>();
    }
    std::vector<std::string> conditions;
    for (int number = 1;; ++number) {
      const std::string condition = modINI::GetIniString(ini, section, key + std::to_string(number), "");
      if (condition.empty()) break;
      conditions.push_back(condition);
    }
    here.action("Found " + std::to_string(conditions.size()) + " conditions");
    return conditions;
  });
}

}  // namespace assistant
