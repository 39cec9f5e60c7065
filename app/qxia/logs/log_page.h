// The page of `qxia log`.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/logs/log_file.h"

namespace qxia::logs {

/// "Office Suite 2.1.0: failed", UTF-8.
std::string Headline(const LoggedRun& run);
/// "begun 2006-03-05 14:03:27, ended 2006-03-05 14:05:11, 1 restart".
std::string CourseOf(const LoggedRun& run);

/// All runs with their components and all rows, with filters by kind, component and text.
std::string LogPage(const std::vector<LogFile>& files);

}  // namespace qxia::logs
