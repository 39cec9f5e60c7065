#include "platform/simulated/machine.h"

#include "platform/simulated/text.h"

namespace simulated {

using platform::Status;

namespace {

constexpr Status PrivilegeNotHeld{1314};

// Buffers of the real machine, in characters, the terminating zero included: what does not fit is not told.
constexpr std::size_t WindowsFolderSize = 255;
constexpr std::size_t SystemFolderSize = 256;
constexpr std::size_t ComputerNameSize = 256;

/// The Windows 95 family repeats its version in the upper half of the build number.
constexpr std::uint32_t Build9x(std::uint32_t major, std::uint32_t minor, std::uint32_t build) {
  return major << 24 | minor << 16 | build;
}

std::string Fitting(const std::string& text, std::size_t size) {
  return text.size() < size ? text : "";
}

}  // namespace

const std::vector<System>& Systems() {
  static constexpr const char* windowsStartup = "C:\\WINDOWS\\Start Menu\\Programs\\StartUp";
  static constexpr const char* documents = "C:\\Documents and Settings";
  static const std::vector<System> systems = {
      {"Windows 95", {1, 4, 0, Build9x(4, 0, 950)}, "C:\\WINDOWS", "C:\\WINDOWS\\SYSTEM", "", windowsStartup},
      {"Windows 98", {1, 4, 10, Build9x(4, 10, 1998)}, "C:\\WINDOWS", "C:\\WINDOWS\\SYSTEM", "", windowsStartup},
      {"Windows ME", {1, 4, 90, Build9x(4, 90, 3000)}, "C:\\WINDOWS", "C:\\WINDOWS\\SYSTEM", "", windowsStartup},
      {"Windows NT 3.51", {2, 3, 51, 1057}, "C:\\WINNT35", "C:\\WINNT35\\System32", "", ""},
      {"Windows NT 4.0", {2, 4, 0, 1381}, "C:\\WINNT", "C:\\WINNT\\System32", "C:\\WINNT\\Profiles", ""},
      {"Windows 2000", {2, 5, 0, 2195}, "C:\\WINNT", "C:\\WINNT\\system32", documents, ""},
      {"Windows XP", {2, 5, 1, 2600}, "C:\\WINDOWS", "C:\\WINDOWS\\system32", documents, ""},
      {"Windows 2003", {2, 5, 2, 3790}, "C:\\WINDOWS", "C:\\WINDOWS\\system32", documents, ""},
  };
  return systems;
}

const System& FindSystem(const std::string& name) {
  std::string names;
  for (const System& system : Systems()) {
    if (SameText(system.name, name)) return system;
    names += (names.empty() ? "" : ", ") + std::string(system.name);
  }
  Refuse("system '" + name + "' is not known; choose one of " + names);
}

Status Machine::systemVersion(platform::SystemVersion& version) {
  version = {};
  if (versionGiven_ && !version_) return Status::InvalidParameter;
  version = versionGiven_ ? *version_ : system_->version;
  return Status::Ok;
}

std::string Machine::windowsFolder() {
  return Fitting(system_->windowsFolder, WindowsFolderSize);
}

std::string Machine::systemFolder() {
  return Fitting(system_->systemFolder, SystemFolderSize);
}

std::string Machine::computerName() {
  return Fitting(computer, ComputerNameSize);
}

std::string Machine::profileFolder() const {
  for (const auto& [variable, value] : variables)
    if (SameText(variable, "USERPROFILE")) return value;
  return system_->profiles[0] == '\0' ? "" : std::string(system_->profiles) + "\\" + user;
}

std::string Machine::startupFolder() const {
  if (!hasStartup) return "";
  const std::string profile = profileFolder();
  return profile.empty() ? system_->startup : profile + "\\Start Menu\\Programs\\Startup";
}

std::string Machine::systemVariable(const std::string& name) const {
  if (SameText(name, "windir")) return system_->windowsFolder;
  if (SameText(name, "TEMP")) return std::string(system_->windowsFolder) + "\\TEMP";
  if (!isNt()) return "";
  if (SameText(name, "SystemRoot")) return system_->windowsFolder;
  if (SameText(name, "USERNAME")) return user;
  if (SameText(name, "USERDOMAIN")) return domain;
  if (SameText(name, "COMPUTERNAME")) return computer;
  if (SameText(name, "USERPROFILE")) return profileFolder();
  if (SameText(name, "ProgramFiles")) return system_->version.major >= 5 ? "C:\\Program Files" : "";
  return "";
}

std::string Machine::environment(const std::string& name) {
  for (const auto& [variable, value] : variables)
    if (SameText(variable, name)) return value;
  return systemVariable(name);
}

void Machine::setProgram(const std::string& path, const std::string& arguments) {
  programPath_ = path;
  arguments_ = arguments;
  commandLine_ = "\"" + path + "\"" + (arguments.empty() ? "" : " " + arguments);
}

bool EventLog::reportError(const std::string& source, const std::string& text) {
  if (!machine_.isNt()) return false;
  journal_.record("event log " + source + ": " + text);
  return true;
}

Status Power::enableShutdownPrivilege() {
  privileged_ = machine_.isNt();
  return privileged_ ? Status::Ok : Status::CallNotImplemented;
}

Status Power::restartByForce() {
  if (machine_.isNt() && !privileged_) return PrivilegeNotHeld;
  if (!endSession_()) return Status::AccessDenied;
  restartRequested_ = true;
  journal_.record("exit windows, flags 6, reason 0");
  return Status::Ok;
}

}  // namespace simulated
