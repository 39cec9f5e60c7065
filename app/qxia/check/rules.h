// The rules by which media are checked: one table, from which findings, `--explain` and docs/checks.md are told.
#pragma once

#include <span>
#include <string>

#include "app/qxia/check/rule.h"

namespace qxia::check {

std::span<const Rule> Rules();

/// The rule of that number; null without one.
const Rule* FindRule(int number);
/// The number that a text like "QX105" names; 0 for any other text.
int RuleNumber(const std::string& text);
/// "QX105".
std::string RuleName(int number);

/// One rule as `--explain` prints it.
std::string Explanation(const Rule& rule);
/// All rules as the page docs/checks.md.
std::string RulesPage();

}  // namespace qxia::check
