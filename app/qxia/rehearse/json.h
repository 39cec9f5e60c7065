// Rehearsed runs as JSON: docs/qxia-rehearse.schema.json has the form.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "app/qxia/rehearse/run.h"

namespace qxia {

/// One run, or several as `runs`.
nlohmann::json ToJson(const std::vector<RehearsedRun>& runs);

/// What is otherwise than in an earlier rehearsal's JSON, one line each; where the logs lie does not count. Raises
/// UsageError for a text that is no such JSON.
std::vector<std::string> Differences(const std::vector<RehearsedRun>& runs, const std::string& file);

}  // namespace qxia
