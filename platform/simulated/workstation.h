// The simulated workstation: a computer whose state is a folder of the host, and whose programs, discs, packages and
// persons act as declared. See README.md.
#pragma once

#include <string>
#include <vector>

#include "platform/simulated/computer.h"

namespace simulated {

class Workstation : public Computer {
 public:
  /// The machine whose state is in the folder: a new one is set up there (Windows XP with a drive C), one that was
  /// there before is as it was left. Raises std::runtime_error when the folder cannot be used or a file in it cannot
  /// be read.
  explicit Workstation(const std::string& folder);
  ~Workstation() override;

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
  /// When each of them happened, in milliseconds of the machine's time.
  const std::vector<std::int64_t>& moments() const { return journal_.moments; }
  /// Programs and packages that ran undeclared, boxes and dialogs that came unscripted.
  std::vector<std::string> undeclared() const;
  /// Declarations and scripts that nothing has used.
  std::vector<std::string> unused() const;

 private:
  void loadFacts();
};

}  // namespace simulated
