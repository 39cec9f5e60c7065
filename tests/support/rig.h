// What a behaviour test stands on: a simulated workstation of its own, with short words to set it up and read it back.
#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/simulated/workstation.h"
#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"

using Names = std::vector<std::string>;

/// The words of a text, as a cell of a table holds several names.
Names Words(const std::string& text);

/// A sanitizer slows every run, and what a sweep looks for shows at one operation in seven as well as at all of them.
#ifdef __SANITIZE_ADDRESS__
inline constexpr int EveryOperation = 7;
#else
inline constexpr int EveryOperation = 1;
#endif

/// Owns a temporary folder and the workstation in it: Windows XP with a drive C, the program in C:\QX and a CD-ROM
/// drive D with an empty disc labelled DISC1. At its end the test fails for everything that came undeclared or
/// unscripted, and for every declaration or script that was never used, unless the test said tolerateUnused().
class Rig {
 public:
  Rig();
  ~Rig();
  Rig(const Rig&) = delete;
  Rig& operator=(const Rig&) = delete;

  simulated::Workstation& machine() { return *machine_; }

  /// From here on each workstation is looked at before it goes.
  static void lookAtEach(std::function<void(Rig&)> look);

  // Setting up

  /// Writes a file with its folders; "\n" becomes CR LF.
  void file(const std::string& path, const std::string& text);
  /// Declares a package and puts a file at its path.
  void package(simulated::Package package);
  /// Declares what the program does whose command line contains the pattern.
  void program(const std::string& pattern, simulated::Outcome outcome = {});
  /// The same, matched another way.
  void program(const std::string& pattern, simulated::Match match, simulated::Outcome outcome = {});
  void answer(const std::string& title, platform::BoxAnswer answer, const std::string& textPart = "");
  void press(std::initializer_list<platform::WindowEvent> events);
  /// Writes a text value under HKEY_LOCAL_MACHINE.
  void set(const std::string& key, const std::string& name, const std::string& text);
  /// Another content and label for the disc in D; the folder holds it when it is put in again.
  void insertDisc(const std::string& label);
  void tolerateUnused() { tolerateUnused_ = true; }

  // Running

  /// Runs the whole program with these arguments on this machine, or on a decorator around it; its exit code.
  int run(const std::string& arguments);
  int run(const std::string& arguments, platform::Platform& machine);
  /// Runs while such operations on what holds this text fail, as faults::Faults::fail says; its exit code.
  int runFailing(const std::string& operation, const std::string& target, platform::Status status,
                 const std::string& arguments, int times = 1000000);
  /// Runs the program at this path with a whole command line, as the system starts it from its list of programs.
  int runCommand(const std::string& programPath, const std::string& commandLine);
  /// Runs until the power goes before the n-th operation that changes something, and restarts the machine; false when
  /// the run came to its end before.
  bool runUntilPowerCut(const std::string& arguments, int operation);
  /// Restarts the machine; run(logonArguments()) is what the logon starts then.
  void restart() { machine_->restart(); }
  /// The arguments with which the logon starts the program; a test failure when it does not start it.
  std::string logonArguments();

  // Reading back

  /// A value under HKEY_LOCAL_MACHINE: a text as it is, a number in decimal, "" when it is not there.
  std::string value(const std::string& key, const std::string& name);
  bool hasKey(const std::string& key);
  bool hasValue(const std::string& key, const std::string& name);
  /// Everything under a key of HKEY_LOCAL_MACHINE, one line a value: key\name=value.
  Names registryLines(const std::string& key);
  /// The file's text; "" when it is not there.
  std::string text(const std::string& path);
  bool exists(const std::string& path);
  /// The script that the logon starts.
  std::string startupScript() { return machine_->startupFolder() + "\\Start QX Installation Assistant.vbs"; }
  /// The log of a run that knows no product.
  std::string defaultLog() { return text("C:\\QX\\QX Installation Assistant.html"); }
  /// The run's log in its default place; the uninstall log.
  std::string log(const std::string& product);
  std::string uninstallLog(const std::string& product);
  /// Command lines run, in order.
  const Names& ran() { return machine_->processes().ran(); }
  /// Effects that begin with this text, in order; all of them without one.
  Names effects(const std::string& beginning = "");

  /// The machine's state on the host.
  const std::string& folder() const { return folder_.path(); }

 private:
  std::string discFolder(const std::string& label);

  TemporaryFolder folder_;
  std::unique_ptr<simulated::Workstation> machine_;
  bool tolerateUnused_ = false;
};
