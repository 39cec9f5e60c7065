// Windows Installer's own logs of packages, which lie in folders beside the program's log.
#pragma once

#include <string>

#include "app/qxia/logs/reader.h"

namespace qxia::logs {

/// The line that tells where a package failed: the first one with "Return value 3". The log may be UTF-16 or ANSI.
/// Number and text stay empty where there is none. Raises std::runtime_error for what cannot be read.
PackageLog FindReturnValue3(const std::string& path);

/// Gives every package that failed the log that lies beside `logPath`, or beside the folder of an archived one.
/// Returns a text for each that is there and cannot be read.
std::vector<std::string> FindPackageLogs(const std::string& logPath, LoggedRun& run);

}  // namespace qxia::logs
