// The older notation of conditions: one text of comma-separated conditions.

#include <vector>

#include "base/records.h"
#include "base/text.h"
#include "exec/condition_rules.h"
#include "exec/conditions.h"

namespace {

/// The name ends at the first of the operator's characters, the operand starts behind the last. One leading "v" of the
/// operand is dropped.
Condition TakeApart(const std::string& text) {
  const std::size_t first = text.find_first_of("<=>");
  if (first == std::string::npos) {
    throw Error(GeneralError, "Condition \"" + text + "\" holds none of <, = and >", "CheckLegacyConditionString");
  }
  const std::size_t last = text.find_last_of("<=>");
  Condition condition{Trim(text.substr(0, first)), Trim(text.substr(first, last - first + 1)),
                      Trim(text.substr(last + 1))};
  if (StartsWithIgnoringCase(condition.operand, "v")) condition.operand.erase(0, 1);
  return condition;
}

void Check(Run& run, const std::string& text) {
  Condition condition = TakeApart(text);
  if (IsRunOnUninstall(condition)) return;
  if (Contains(text, "\"")) {
    RequireOlderCondition(run, condition);
  } else {
    condition.name = LowerCase(condition.name);
    RequireProductVersion(run, condition);
  }
}

}  // namespace

namespace modMain {

void CheckLegacyConditionString(Run& run, const std::string& conditions) {
  constexpr const char* source = "CheckLegacyConditionString";
  if (run.verbose) run.log.Log(source, 0, "Condition found - " + conditions);
  if (conditions.empty() || EqualIgnoringCase(conditions, NotApplicable)) return;
  const std::vector<std::string> fields = Split(conditions, ',');
  const auto count = static_cast<int>(fields.size());
  if (run.verbose) run.log.Log(source, 0, "Number of conditions = " + std::to_string(count));
  for (int number = 1; number <= count; ++number) {
    const std::string& condition = fields[static_cast<std::size_t>(number) - 1];
    if (run.verbose) run.log.Log(source, 0, "Condition " + std::to_string(number) + ". " + condition);
    if (!Trim(condition).empty()) Check(run, condition);
  }
}

}  // namespace modMain
