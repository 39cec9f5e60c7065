// The parts of the simulated workstation, put together: what a declaration says of a machine is said to this.
#pragma once

#include <string>

#include "platform/platform.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/files.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/machine.h"
#include "platform/simulated/processes.h"
#include "platform/simulated/registry.h"
#include "platform/simulated/screen.h"
#include "platform/simulated/windows_installer.h"

namespace simulated {

class Computer : public platform::Platform {
 public:
  /// A new machine (Windows XP without a drive) with its state in the folder; the registry is as it was left there, by
  /// a Japanese machine or another.
  Computer(const std::string& folder, bool japanese);

  Registry& registry() override { return registry_; }
  const Registry& registry() const { return registry_; }
  Processes& processes() override { return processes_; }
  WindowsInstaller& installer() override { return installer_; }
  Files& files() override { return files_; }
  Machine& machine() override { return machine_; }
  Clock& clock() override { return clock_; }
  Screen& mainWindow() override { return screen_; }
  Screen& dialogs() override { return screen_; }
  Screen& otherWindows() override { return screen_; }
  /// The three above at once, with what a person does and sees.
  Screen& screen() { return screen_; }
  EventLog& eventLog() override { return eventLog_; }
  Power& power() override { return power_; }

  /// Turns the machine into one with this system ("Windows 98"), with its folders.
  void setSystem(const std::string& name);
  /// Turns the machine into one with the Japanese code page, or back.
  void setJapanese(bool japanese);
  /// Takes the Startup folder away, or gives it back.
  void setStartup(bool there);
  void setUser(const std::string& user, const std::string& domain);
  /// Adds a drive whose content is a folder of the machine's state.
  void addDrive(Drive drive);
  /// The host folder that such a drive has in the machine's state.
  std::string ownFolder(char letter) const;
  /// The folder with the programs that start at this user's logon, as the registry or else the profile has it; "" where
  /// there is none.
  std::string startupFolder() const;
  Journal& journal() { return journal_; }

 protected:
  void makeSystemFolders();

  std::string folder_;
  Journal journal_;
  Clock clock_;
  Machine machine_;
  Files files_{journal_};
  Registry registry_;
  WindowsInstaller installer_{registry_, files_, journal_};
  Processes processes_{{journal_, clock_, registry_, files_, machine_, installer_}};
  Screen screen_{journal_};
  EventLog eventLog_{machine_, journal_};
  Power power_{machine_, journal_, [this] { return screen_.agreesToSessionEnd(); }};
};

}  // namespace simulated
