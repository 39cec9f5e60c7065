// Whether a component may be installed on this computer.
#pragma once

#include <string>
#include <vector>

#include "base/run.h"

/// One condition, taken apart.
struct Condition {
  std::string name;
  std::string op;  ///< "=", "<>", "<", ">", "<=", "=<", ">=", "=>"
  std::string operand;
};

namespace modMain {

/// True when all conditions of the current component hold; one without conditions holds. A condition that does not hold
/// is told in the log. The older notation (one text in "Condition") takes precedence over the current one (one value
/// per condition under "ConditionList").
bool CheckConditions(Run& run);

/// Checks the older notation: comma-separated conditions in one text. Raises a condition error (7000 to 7006) for the
/// first that does not hold.
void CheckLegacyConditionString(Run& run, const std::string& conditions);

/// Reads the conditions of a component ini's section: one comma-separated "Condition", or "Condition1", "Condition2"
/// and so on up to the first empty one. True when there is at least one.
bool ReadIniConditions(Run& run, const std::string& section, std::vector<std::string>& conditions,
                       const std::string& iniFile);

/// True when the keyword ("win2k") selects this machine's operating system, which is asked for once.
bool IsValidOS(Run& run, const std::string& keyword);

}  // namespace modMain

/// Takes a stored condition apart: "(" operator ")" operand, or the operand alone for "=".
Condition ParseCondition(const std::string& name, const std::string& data);

/// True for the keyword that stands among the conditions of an ini file and is none.
bool IsRunOnUninstall(const Condition& condition);

/// Splits a condition line of an ini file at its first run of "<", "=" and ">".
Condition SplitConditionLine(const std::string& line);
