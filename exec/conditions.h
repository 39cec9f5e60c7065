// Whether a component may be installed on this computer.
#pragma once

#include <string>

#include "base/component.h"
#include "exec/condition_rules.h"

namespace assistant {

enum class Conditions {
  Hold,
  DoNotHold,
  CannotBeRead,  ///< the registry does not give them, or what they ask for: nobody knows whether they hold
};

/// Whether all conditions of the component hold; one without conditions holds. One that does not is told in the log.
/// The older notation (one text in "Condition") takes precedence over the current one (one value per condition under
/// "ConditionList").
Conditions CheckConditions(const Surroundings& surroundings, const Component& component);

/// Checks the older notation: comma-separated conditions in one text. Raises a condition error (7000 to 7006) for the
/// first that does not hold.
void CheckLegacyConditionString(const Surroundings& surroundings, const std::string& conditions);

}  // namespace assistant
