// The simulated workstation: a computer whose state is a folder of the host, and whose programs, discs, packages and
// persons act as declared. See README.md.
#pragma once

#include <string>
#include <vector>

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

class Workstation : public platform::Platform {
 public:
  /// The machine whose state is in the folder: a new one is set up there (Windows XP with a drive C), one that was
  /// there before is as it was left. Raises std::runtime_error when the folder cannot be used or a file in it cannot
  /// be read.
  explicit Workstation(const std::string& folder);
  ~Workstation() override;

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
  void setUser(const std::string& user, const std::string& domain);
  /// Adds a drive whose content is a folder of the machine's state.
  void addDrive(Drive drive);
  /// The host folder that such a drive has in the machine's state.
  std::string ownFolder(char letter) const;
  /// Makes a host folder the read-only content of a drive.
  void mount(char letter, const std::string& hostFolder, platform::DriveType type, const std::string& label);

  /// Ends everything that runs and starts again from what is on the disk: open keys and files, the screen and running
  /// programs are gone; declarations and scripts stay.
  void restart();
  bool restartRequested() const { return power_.restartRequested(); }
  /// The command lines that a logon starts: the registry's Run values, then the scripts of the Startup folder (their
  /// lines `shell.Run "command"`).
  std::vector<std::string> logonCommands();
  /// Saves drives, names and the time; registry and files are saved as they change.
  void saveFacts();

  /// Everything that happened, in order.
  const std::vector<std::string>& effects() const { return journal_.effects; }
  /// Programs and packages that ran undeclared, boxes and dialogs that came unscripted.
  std::vector<std::string> undeclared() const;
  /// Declarations and scripts that nothing has used.
  std::vector<std::string> unused() const;
  Journal& journal() { return journal_; }

 private:
  void makeSystemFolders();
  void loadFacts();

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
  Power power_{machine_, journal_};
};

}  // namespace simulated
