// The order of the components.
#pragma once

#include <string>
#include <vector>

#include "base/run.h"

namespace modQXInstallationMain {

/// Makes run.sequence anew from the records: one row per component of run.actions, by ascending sequence number.
void GetSequence(Run& run);

}  // namespace modQXInstallationMain

enum class NextComponent { Unknown, Found, None };

namespace modMain {

/// Makes the first component with a sequence number above this one the current component, with what its record holds.
/// Unknown after a failure, which is logged.
NextComponent GetNextInstall(Run& run, double lastSequence);

}  // namespace modMain

/// The components that the product's record holds (those with a sequence number).
std::vector<std::string> RecordedComponents(Run& run);
/// Makes run.actions these components.
void ListActions(Run& run);
/// The highest of their sequence numbers; 0 without any.
double HighestSequenceNumber(Run& run);

/// Makes a component of the current product the current one.
void SelectComponent(Run& run, const std::string& component);
