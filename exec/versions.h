// Comparing versions.
#pragma once

#include <string>
#include <vector>

#include "base/app_log.h"

namespace assistant {

/// The parts between the points, without one leading "v".
std::vector<std::string> VersionParts(const std::string& version);

/// True when version `a` is strictly newer than `b`: one leading "v" is dropped from each, and the parts between the
/// points are compared as integers from the left, as many as `a` has. A part that is no number, or that `b` lacks, is
/// logged and makes the result false.
bool IsNewerVersion(clsAppLog& log, const std::string& a, const std::string& b);

}  // namespace assistant
