#include "app/qxia/logs/package_log.h"

#include <filesystem>
#include <stdexcept>

#include "app/qxia/logs/text_files.h"
#include "platform/simulated/host.h"
#include "platform/simulated/text.h"

namespace qxia::logs {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view Failed = "Return value 3";

/// The name behind the switch for a log, without its folder; "" when the command has none.
std::string NameInCommand(const std::string& command) {
  constexpr std::string_view option = "/l*v \"";
  const std::size_t at = command.find(option);
  if (at == std::string::npos) return "";
  const std::size_t start = at + option.size();
  const std::string path = command.substr(start, command.find('"', start) - start);
  return path.substr(path.rfind('\\') + 1);
}

/// A name from a log is no way out of the folder.
bool IsPlainName(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

std::string EntryOf(const std::string& folder, const std::string& name) {
  const std::string entry = simulated::FindHostEntry(folder, name);
  return entry.empty() ? "" : folder + "/" + entry;
}

/// Where package logs may lie: in their folder beside the log or beside the archive that the log lies in; or, where
/// somebody collected all in one folder, with the log.
std::string FindPackageLog(const std::string& logPath, const std::string& folderName, const std::string& name) {
  const fs::path folder = fs::path(logPath).parent_path();
  const std::string own = folder.empty() ? "." : folder.string();
  const std::string above = own + "/..";
  for (const std::string& place : {EntryOf(own, folderName), EntryOf(above, folderName), own}) {
    if (place.empty() || !fs::is_directory(fs::symlink_status(place))) continue;
    std::string found = EntryOf(place, name);
    if (!found.empty() && fs::is_regular_file(fs::symlink_status(found))) return found;
  }
  return "";
}

}  // namespace

PackageLog FindReturnValue3(const std::string& path) {
  const std::string text = DecodedText(ReadWholeFile(path));
  PackageLog log{path, 0, ""};
  const std::size_t at = text.find(Failed);
  if (at == std::string::npos) return log;
  const std::size_t start = text.rfind('\n', at) + 1;
  log.line = 1;
  for (std::size_t i = 0; i < start; ++i) log.line += text[i] == '\n' ? 1 : 0;
  log.text = simulated::Trim(text.substr(start, text.find('\n', at) - start));
  return log;
}

std::vector<std::string> FindPackageLogs(const std::string& logPath, LoggedRun& run) {
  std::vector<std::string> problems;
  const bool uninstall = run.direction == Direction::Uninstall;
  for (LoggedComponent& component : run.components) {
    if (component.outcome != Outcome::Failed) continue;
    const std::string name = NameInCommand(component.command);
    if (!IsPlainName(name)) continue;
    const std::string path = FindPackageLog(logPath, uninstall ? "Uninstall MSI Log Files" : "MSI Log Files", name);
    if (path.empty()) continue;
    try {
      component.packageLog = FindReturnValue3(path);
    } catch (const std::runtime_error& failure) {
      problems.emplace_back(failure.what());
    }
  }
  return problems;
}

}  // namespace qxia::logs
