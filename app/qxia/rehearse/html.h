// Rehearsed runs as one self-contained page.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/rehearse/run.h"

namespace qxia {

/// The matrix of components and systems with the deciding fact in each cell, then each system's run: its course in time
/// with the restarts, what is in doubt, and its log.
std::string HtmlPage(const std::vector<RehearsedRun>& runs);

}  // namespace qxia
