#include "platform/simulated/workstation.h"

#include "platform/simulated/declaration.h"
#include "platform/simulated/host.h"
#include "platform/simulated/text.h"

namespace simulated {
namespace {

constexpr std::uint32_t MillisecondsToStart = 42000;
constexpr const char* RunKeys[] = {"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Run",
                                   "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run"};

/// The commands of `shell.Run "command"` lines: a doubled quote stands for one.
std::vector<std::string> ScriptCommands(const std::string& script) {
  std::vector<std::string> commands;
  for (const std::string& line : Split(script, '\n')) {
    const std::size_t call = Lower(line).find(".run \"");
    if (call == std::string::npos) continue;
    std::string command;
    for (std::size_t i = call + 6; i < line.size(); ++i) {
      if (line[i] == '"' && (i + 1 >= line.size() || line[i + 1] != '"')) break;
      if (line[i] == '"') ++i;
      command += line[i];
    }
    commands.push_back(command);
  }
  return commands;
}

std::string FactsFile(const std::string& folder) {
  return folder + "/machine.ini";
}

}  // namespace

Workstation::Workstation(const std::string& folder) : Computer(folder, DeclaresJapanese(FactsFile(folder))) {
  loadFacts();
  makeSystemFolders();
  journal_.forgetEffects();
}

Workstation::~Workstation() {
  try {
    saveFacts();
  } catch (const std::exception&) {
    // Nobody is left to tell: what failed to be saved is only free space and the time.
  }
}

void Workstation::loadFacts() {
  const std::string file = FactsFile(folder_);
  if (ReadHostFile(file).empty()) {
    addDrive({});
  } else {
    LoadMachine(file, *this);
  }
}

void Workstation::saveFacts() {
  WriteHostFile(FactsFile(folder_), DescribeMachine(*this));
}

void Workstation::mount(char letter, const std::string& hostFolder, platform::DriveType type,
                        const std::string& label) {
  files_.setDrive({letter, type, label, hostFolder, true, false, 0});
}

void Workstation::restart() {
  journal_.record("the machine restarts");
  files_.closeAll();
  processes_.endAll();
  screen_.clear();
  power_.restart();
  clock_.restart(MillisecondsToStart);
  registry_.reload();
  installer_.reload();
  saveFacts();
}

std::vector<std::string> Workstation::logonCommands() {
  std::vector<std::string> commands;
  for (const char* key : RunKeys)
    for (const std::string& name : registry_.values(key))
      if (const std::string command = registry_.text(key, name); !command.empty()) commands.push_back(command);
  std::vector<platform::FolderEntry> entries;
  if (!processes_.hasScriptHost()) return commands;
  const std::string folder = startupFolder();
  files_.list(folder, entries);
  for (const platform::FolderEntry& entry : entries) {
    if (!EndsWithText(entry.name, ".vbs")) continue;
    const std::vector<std::string> found = ScriptCommands(files_.content(folder + "\\" + entry.name).value_or(""));
    commands.insert(commands.end(), found.begin(), found.end());
  }
  return commands;
}

std::vector<std::string> Workstation::undeclared() const {
  std::vector<std::string> all = journal_.undeclared;
  all.insert(all.end(), journal_.unscripted.begin(), journal_.unscripted.end());
  return all;
}

std::vector<std::string> Workstation::unused() const {
  std::vector<std::string> all = processes_.unused();
  for (const std::vector<std::string>& more : {installer_.unused(), screen_.unused()})
    all.insert(all.end(), more.begin(), more.end());
  return all;
}

}  // namespace simulated
