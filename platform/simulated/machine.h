// What the simulated computer is: one of eight systems, its folders, names and environment; its event log and power.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/event_log.h"
#include "platform/machine.h"
#include "platform/power.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/text.h"

namespace simulated {

/// A system that the workstation can be.
struct System {
  const char* name;  ///< "Windows XP"
  platform::SystemVersion version;
  const char* windowsFolder;
  const char* systemFolder;
  const char* profiles;  ///< parent of the users' profiles; "" where users have none
  const char* startup;   ///< the one Startup folder of a system without profiles; "" where there is none
};

const std::vector<System>& Systems();
/// By name without regard to letter case; raises std::runtime_error that lists the names.
const System& FindSystem(const std::string& name);

class Machine : public platform::Machine {
 public:
  platform::Status systemVersion(platform::SystemVersion& version) override;
  std::string windowsFolder() override;
  std::string systemFolder() override;
  std::string computerName() override;
  std::string environment(const std::string& name) override;
  std::string programPath() override { return programPath_; }
  const std::string& arguments() const { return arguments_; }
  std::string commandLine() override { return commandLine_; }
  bool isLeadByte(unsigned char byte) override { return japanese && IsJapaneseLeadByte(byte); }
  bool anotherCopyRuns() override {
    holdsPlace_ = true;
    return anotherCopy_;
  }

  const System& system() const { return *system_; }
  bool isNt() const { return system_->version.platformId == 2; }
  void setSystem(const System& system) { system_ = &system; }
  /// What the version query says instead; nothing: it fails.
  void setVersion(std::optional<platform::SystemVersion> version) {
    version_ = version;
    versionGiven_ = true;
  }

  std::string computer = "QXTEST";
  std::string user = "Administrator";
  std::string domain = "QX";
  /// Whether the code page is the Japanese one (932). Files and registry are told as well: Computer::setJapanese.
  bool japanese = false;
  /// Whether there is a Startup folder; without one no script is started at a logon.
  bool hasStartup = true;
  /// Variables that were set beside those of the system; "" hides one of the system.
  std::map<std::string, std::string> variables;

  /// The program's file, and its arguments as they stand behind it on the command line.
  void setProgram(const std::string& path, const std::string& arguments);
  void setCommandLine(const std::string& whole) { commandLine_ = whole; }
  void setAnotherCopyRuns(bool runs) { anotherCopy_ = runs; }
  /// Whether the program asked for the other copy, by which it keeps later ones away itself.
  bool holdsPlace() const { return holdsPlace_; }
  /// The user's folder with the programs that start at logon; "" where the system has none.
  std::string startupFolder() const;
  std::string profileFolder() const;

 private:
  std::string systemVariable(const std::string& name) const;

  const System* system_ = &FindSystem("Windows XP");
  bool versionGiven_ = false;
  std::optional<platform::SystemVersion> version_;
  std::string programPath_ = "C:\\QX\\QX Installation Assistant.exe";
  std::string commandLine_ = "\"C:\\QX\\QX Installation Assistant.exe\"";
  std::string arguments_;
  bool anotherCopy_ = false;
  bool holdsPlace_ = false;
};

class EventLog : public platform::EventLog {
 public:
  EventLog(Machine& machine, Journal& journal) : machine_(machine), journal_(journal) {}
  /// Only the NT family has an event log.
  bool reportError(const std::string& source, const std::string& text) override;

 private:
  Machine& machine_;
  Journal& journal_;
};

class Power : public platform::Power {
 public:
  /// `endSession` asks the programs, as each restart does; false when one objects.
  Power(Machine& machine, Journal& journal, std::function<bool()> endSession)
      : machine_(machine), journal_(journal), endSession_(std::move(endSession)) {}
  platform::Status enableShutdownPrivilege() override;
  /// The NT family refuses without the privilege (1314, "a required privilege is not held").
  platform::Status restartByForce() override;

  bool restartRequested() const { return restartRequested_; }
  void restart() { restartRequested_ = privileged_ = false; }

 private:
  Machine& machine_;
  Journal& journal_;
  std::function<bool()> endSession_;
  bool privileged_ = false;
  bool restartRequested_ = false;
};

}  // namespace simulated
