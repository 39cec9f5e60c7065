// A log file of the host with what lies beside it.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "app/qxia/logs/reader.h"

namespace qxia::logs {

/// A file that could not be read, or not whole.
struct Problem {
  std::string file;
  std::string text;
};

struct LogFile {
  std::string path;
  ReadLog log;
};

/// Reads a log and, beside it, package logs and .reg files of the product. What could not be read is told in
/// `problems`; a log that is none has no runs.
LogFile ReadLogFile(const std::string& path, Keep keep, std::vector<Problem>& problems);

/// "succeeded", "failed", "waiting" or "broken off".
std::string OutcomeOf(const LoggedRun& run);

/// The member `components` of the JSON forms of logs: that of a run, with the deciding row and the package log's line.
nlohmann::json ComponentsToJson(const LoggedRun& run);
nlohmann::json ToJson(const std::vector<Problem>& problems);
/// The text of a JSON form. What no one could decode becomes U+FFFD.
std::string JsonText(const nlohmann::json& json);

/// The JSON form of `qxia log`.
std::string LogsAsJson(const std::vector<LogFile>& files, const std::vector<Problem>& problems);

/// "2006-03-05 14:03:27" for a time of the log.
std::string ShownTime(const std::string& time);

}  // namespace qxia::logs
