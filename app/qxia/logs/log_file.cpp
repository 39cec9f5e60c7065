#include "app/qxia/logs/log_file.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "app/qxia/logs/package_log.h"
#include "app/qxia/logs/record.h"
#include "app/qxia/logs/text_files.h"
#include "platform/simulated/text.h"

namespace qxia::logs {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

std::vector<std::string> RecordsBeside(const std::string& path) {
  std::vector<std::string> found;
  const fs::path folder = fs::path(path).parent_path();
  std::error_code failure;
  for (fs::directory_iterator entry(folder.empty() ? "." : folder, failure), end; !failure && entry != end;
       entry.increment(failure)) {
    const std::string name = entry->path().filename().string();
    if (simulated::EndsWithText(name, ".reg") && entry->is_regular_file()) found.push_back(entry->path().string());
  }
  std::sort(found.begin(), found.end());
  return found;
}

void TakeRecordsBeside(LogFile& file, std::vector<Problem>& problems) {
  for (const std::string& path : RecordsBeside(file.path)) {
    try {
      for (const RecordedProduct& record : ReadRecords(path)) TakeOver(record, file.log.runs.back());
    } catch (const std::runtime_error& failure) {
      problems.push_back({path, failure.what()});
    }
  }
}

void TellBroken(const LogFile& file, std::vector<Problem>& problems) {
  if (file.log.runs.empty()) {
    problems.push_back({file.path, file.path + " is no log of the program"});
  } else if (file.log.brokenLine != 0) {
    const std::string line = std::to_string(file.log.brokenLine);
    problems.push_back(
        {file.path, file.path + " is damaged or cut off: line " + line + " is no whole row; the others were read"});
  }
}

Json RunToJson(const LogFile& file, const LoggedRun& run) {
  return {{"file", file.path},
          {"firstRow", run.firstRow},
          {"product", ToJson(run.product)},
          {"uninstall", run.direction == Direction::Uninstall},
          {"outcome", OutcomeOf(run)},
          {"complete", run.end == RunEnd::Complete},
          {"restarts", run.restarts},
          {"begin", run.firstTime},
          {"end", run.lastTime},
          {"components", ComponentsToJson(run)}};
}

}  // namespace

LogFile ReadLogFile(const std::string& path, Keep keep, std::vector<Problem>& problems) {
  LogFile file{path, {}};
  try {
    file.log = ReadLogText(ReadWholeFile(path), keep);
  } catch (const std::runtime_error& failure) {
    problems.push_back({path, failure.what()});
    return file;
  }
  TellBroken(file, problems);
  if (file.log.runs.empty()) return file;
  TakeRecordsBeside(file, problems);
  for (LoggedRun& run : file.log.runs)
    for (const std::string& problem : FindPackageLogs(path, run)) problems.push_back({path, problem});
  return file;
}

std::string OutcomeOf(const LoggedRun& run) {
  if (run.end == RunEnd::Waiting) return "waiting";
  if (run.end == RunEnd::BrokenOff) return "broken off";
  return run.product.succeeded ? "succeeded" : "failed";
}

Json ComponentsToJson(const LoggedRun& run) {
  Json components = Json::array();
  for (const LoggedComponent& component : run.components) {
    Json json = ToJson(component);
    json["row"] = component.row;
    const PackageLog& log = component.packageLog;
    if (!log.path.empty()) json["packageLog"] = {{"path", log.path}, {"line", log.line}, {"text", ToUtf8(log.text)}};
    components.push_back(std::move(json));
  }
  return components;
}

Json ToJson(const std::vector<Problem>& problems) {
  Json json = Json::array();
  for (const Problem& problem : problems) json.push_back({{"file", problem.file}, {"text", problem.text}});
  return json;
}

std::string JsonText(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string LogsAsJson(const std::vector<LogFile>& files, const std::vector<Problem>& problems) {
  Json runs = Json::array();
  for (const LogFile& file : files)
    for (const LoggedRun& run : file.log.runs) runs.push_back(RunToJson(file, run));
  return JsonText({{"format", 1}, {"logs", runs}, {"problems", ToJson(problems)}});
}

std::string ShownTime(const std::string& time) {
  constexpr std::size_t withoutMilliseconds = 19;
  std::string shown = time.substr(0, withoutMilliseconds);
  std::replace(shown.begin(), shown.end(), 'T', ' ');
  return shown;
}

}  // namespace qxia::logs
