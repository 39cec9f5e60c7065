// Rehearsed runs as text.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/rehearse/run.h"

namespace qxia {

/// One run in full.
std::string ReportRun(const RehearsedRun& run);
/// Several runs: the components down, the systems across, and below them why cells differ from the first.
std::string ReportRuns(const std::vector<RehearsedRun>& runs);

/// "failed, exit code 1, 2 restarts, after 0:05:12".
std::string Headline(const RehearsedRun& run);
/// "0:05:12"
std::string Duration(std::int64_t milliseconds);

}  // namespace qxia
