// What a rehearsal leaves in doubt: things that happened undeclared, and declarations that nothing used.
#pragma once

#include <vector>

#include "app/qxia/rehearse/run.h"

namespace qxia {

/// Fills in the loose ends of runs of the same media. A declaration counts only when no run used it, and not where its
/// component was not due.
void FindLooseEnds(std::vector<RehearsedRun>& runs);

}  // namespace qxia
