#include "app/qxia/rehearse/rehearsals.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "app/qxia/machine/machine_file.h"
#include "platform/simulated/host.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

/// "windows-nt-3.51"
std::string FolderName(const std::string& system) {
  std::string name = simulated::Lower(system.empty() ? "machine" : system);
  std::replace(name.begin(), name.end(), ' ', '-');
  return name;
}

}  // namespace

/// With several systems, each has a folder of its own below that of --state.
std::string Rehearsals::folderFor(const std::string& system) const {
  if (settings_.state.empty()) return scratch_.path() + "/" + FolderName(system);
  return settings_.systems.size() == 1 ? settings_.state : settings_.state + "/" + FolderName(system);
}

std::string Rehearsals::machineFileFor(const std::string& system) {
  if (!settings_.machineFile.empty()) return settings_.machineFile;
  const std::string file = scratch_.path() + "/" + FolderName(system) + ".txt";
  // Which declarations the media need does not depend on the system: they are looked at once.
  if (declarations_.empty()) {
    declarations_ = MachineFileFor(settings_.media, settings_.at, system);
    declaredFor_ = system;
  }
  std::string text = declarations_;
  const std::string line = "\nsystem=";
  text.replace(text.find(line), line.size() + declaredFor_.size(), line + system);
  simulated::WriteHostFile(file, text);
  return file;
}

/// Of a machine that goes, the log is what stays.
void Rehearsals::keepLog(RehearsedRun& run) {
  if (!settings_.state.empty() || run.log.empty()) return;
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("qxia-logs-" + std::to_string(getuid()));
  std::filesystem::create_directories(folder);
  const std::filesystem::path kept = folder / (FolderName(run.system) + ".html");
  std::filesystem::copy_file(run.log, kept, std::filesystem::copy_options::overwrite_existing);
  run.log = kept.string();
}

RehearsedRun Rehearsals::rehearse(const std::string& system) {
  const std::string machineFile = machineFileFor(system);
  Workplace workplace(folderFor(system), {settings_.media, settings_.at, settings_.arguments, machineFile, system});
  leftOut_.insert(workplace.leftOut().begin(), workplace.leftOut().end());
  RehearsedRun run = Rehearse(workplace, settings_.media.product, settings_.limits);
  keepLog(run);
  return run;
}

}  // namespace qxia
