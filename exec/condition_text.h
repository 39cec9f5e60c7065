// Conditions as text: how they are written in ini files and kept in records.
#pragma once

#include <string>
#include <vector>

#include "base/ini.h"

namespace assistant {

/// One condition, taken apart.
struct Condition {
  std::string name;
  std::string op;  ///< "=", "<>", "<", ">", "<=", "=<", ">=", "=>"
  std::string operand;
};

/// Takes a stored condition apart: "(" operator ")" operand, or the operand alone for "=". The name becomes lower case.
Condition ParseCondition(const std::string& name, const std::string& data);

/// Takes a condition of the older notation apart: the name ends at the first of the operator's characters, the operand
/// starts behind the last, and one leading "v" of it is dropped. Raises an error for a text without operator.
Condition ParseOlderCondition(const std::string& text);

/// Splits a condition line of an ini file at its first run of "<", "=" and ">".
Condition SplitConditionLine(const std::string& line);

/// True for the keyword that stands among the conditions of an ini file and is none.
bool IsRunOnUninstall(const Condition& condition);

/// The conditions of a component ini's section: one comma-separated "Condition", or "Condition1", "Condition2" and so
/// on up to the first empty one.
std::vector<std::string> ReadIniConditions(const modINI::IniFile& ini, const std::string& section);

}  // namespace assistant
