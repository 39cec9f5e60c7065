// The rows of the table of rules, a part for each range of topics.
#pragma once

#include <array>
#include <span>

#include "app/qxia/check/rule.h"

namespace qxia::check {

extern const std::span<const Rule> TextAndFileRules;
extern const std::span<const Rule> VersionAndConditionRules;
extern const std::span<const Rule> MachineRules;

/// All parts in the order of their numbers.
inline std::array<std::span<const Rule>, 3> RuleRows() {
  return {TextAndFileRules, VersionAndConditionRules, MachineRules};
}

}  // namespace qxia::check
