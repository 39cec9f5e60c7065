// Rehearsed runs as a JUnit report.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/rehearse/run.h"

namespace qxia {

/// A suite for each system, a case for each component and one for the run as a whole. A component that failed is a
/// failure; one that was held back or not reached is skipped.
std::string JUnitReport(const std::vector<RehearsedRun>& runs);

}  // namespace qxia
