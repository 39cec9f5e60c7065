#include "platform/simulated/computer.h"

#include "platform/simulated/host.h"
#include "platform/simulated/text.h"

namespace simulated {
namespace {

constexpr const char* ShellFoldersKey =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr const char* StartupValue = "Startup";

std::string Prepared(const std::string& folder) {
  MakeHostFolder(folder);
  return folder;
}

}  // namespace

Computer::Computer(const std::string& folder, bool japanese)
    : folder_(Prepared(folder)), registry_(folder + "/registry.reg", journal_, japanese) {
  journal_.moment = [this] { return clock_.moment(); };
}

void Computer::makeSystemFolders() {
  const System& system = machine_.system();
  for (const std::string& folder :
       {std::string(system.windowsFolder), std::string(system.systemFolder), machine_.environment("TEMP"),
        machine_.environment("ProgramFiles"), machine_.startupFolder(), std::string("C:\\Program Files")})
    if (!folder.empty()) files_.makeFolder(folder);
  for (const std::string& folder : {std::string(system.windowsFolder), std::string("C:\\Program Files")})
    if (!files_.accessLists().has(folder)) files_.setAccessList(folder, OpenToAdministrators());
  // Without profiles, the registry alone says where the Startup folder is.
  if (machine_.hasStartup && *system.startup != '\0' && registry_.text(ShellFoldersKey, StartupValue) != system.startup)
    registry_.putText(ShellFoldersKey, StartupValue, system.startup);
}

void Computer::setStartup(bool there) {
  const std::string folder = startupFolder();
  machine_.hasStartup = there;
  if (!there && !folder.empty()) files_.remove(folder);
  if (!there) registry_.remove(ShellFoldersKey, StartupValue);
  if (there && files_.allDrives().count('C') != 0) makeSystemFolders();
}

std::string Computer::startupFolder() const {
  const std::string named = registry_.text(ShellFoldersKey, StartupValue);
  return named.empty() ? machine_.startupFolder() : named;
}

void Computer::setSystem(const std::string& name) {
  machine_.setSystem(FindSystem(name));
  files_.setAccessControl(machine_.isNt());
  if (files_.allDrives().count('C') != 0) makeSystemFolders();
}

void Computer::setJapanese(bool japanese) {
  machine_.japanese = japanese;
  files_.setJapanese(japanese);
  registry_.setJapanese(japanese);
}

void Computer::setUser(const std::string& user, const std::string& domain) {
  machine_.user = user;
  machine_.domain = domain;
  if (files_.allDrives().count('C') != 0) makeSystemFolders();
}

std::string Computer::ownFolder(char letter) const {
  return folder_ + "/drive_" + Lower(std::string(1, letter));
}

void Computer::addDrive(Drive drive) {
  if (drive.folder.empty()) {
    drive.folder = ownFolder(drive.letter);
    MakeHostFolder(drive.folder);
  }
  files_.setDrive(std::move(drive));
}

}  // namespace simulated
