// Simulated programs: they run by declared outcomes, for the time that their outcome says.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/processes.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/machine.h"
#include "platform/simulated/outcome.h"
#include "platform/simulated/windows_installer.h"

namespace simulated {

/// What programs act on.
struct Surroundings {
  Journal& journal;
  Clock& clock;
  Registry& registry;
  Files& files;
  Machine& machine;
  WindowsInstaller& installer;
};

/// A program of somebody else that runs. It ends when its time is over or when it was seen often enough.
struct RunningProgram {
  std::string name;
  std::uint64_t milliseconds = UINT64_MAX;  ///< from now
  int queries = -1;                         ///< how many process queries see it; -1: all
};

class Processes : public platform::Processes {
 public:
  explicit Processes(const Surroundings& around) : around_(around) {}

  platform::Status start(const std::string& commandLine, const std::string& workingFolder,
                         platform::ShowWindow showWindow, platform::StartedProcess& started) override;
  platform::WaitResult waitForInputIdle(const platform::StartedProcess&, std::uint32_t) override {
    return platform::WaitResult::Signalled;
  }
  platform::WaitResult wait(const platform::StartedProcess& started, std::uint32_t milliseconds) override;
  platform::Status exitCode(const platform::StartedProcess& started, std::int32_t& exitCode) override;
  void close(platform::StartedProcess& started) override;
  platform::Status runningNames(std::vector<std::string>& names, std::string& askedThrough) override;

  void declare(Program program);
  /// What a command line comes to that nobody declared and the system does not know; nothing: it cannot be started, and
  /// is reported.
  void setFallback(std::function<std::optional<Outcome>(const std::string& commandLine)> fallback) {
    fallback_ = std::move(fallback);
  }
  /// Without the script host its programs cannot be started, and no script of the Startup folder runs.
  void setScriptHost(bool there) { scriptHost_ = there; }
  bool hasScriptHost() const { return scriptHost_; }
  void addRunning(const RunningProgram& program);
  /// Without Windows Management Instrumentation every query fails (0x800401E4, "invalid syntax" of its moniker).
  void setManagement(bool there) { management_ = there; }
  /// Declared programs that never ran.
  std::vector<std::string> unused() const;
  /// Command lines of the programs that started, in order.
  const std::vector<std::string>& ran() const { return ran_; }
  /// The folders in which they started, in full.
  const std::vector<std::string>& startedIn() const { return startedIn_; }
  std::size_t openHandles() const { return handles_.size(); }
  /// Ends everything that runs, without its outcome.
  void endAll();
  /// Does at once what an outcome says.
  void carryOut(const Outcome& outcome);

 private:
  struct Declared {
    Program program;
    std::string pattern;  ///< in lower case
    int runs = 0;
  };
  struct Process {
    std::string commandLine;
    std::string name;
    Outcome outcome;
    std::uint64_t ends = 0;  ///< on the clock's count of elapsed time
    bool ended = false;
  };

  Declared* find(const std::string& commandLine, const std::string& program);
  std::string programOf(const std::string& commandLine);
  platform::Status choose(const std::string& commandLine, Outcome& outcome);
  std::optional<Outcome> undeclared(const std::string& commandLine, const std::string& program);
  bool mayWrite(const std::string& path);
  void write(const FileWrite& file);
  void launch(const std::string& commandLine, Outcome outcome, platform::StartedProcess& started);
  void finish(std::size_t process);
  const Process* behind(std::uintptr_t handle) const;

  Surroundings around_;
  std::function<std::optional<Outcome>(const std::string&)> fallback_;
  bool management_ = true;
  bool scriptHost_ = true;
  std::vector<Declared> programs_;
  std::vector<RunningProgram> running_;
  std::vector<Process> processes_;
  std::map<std::uintptr_t, std::size_t> handles_;  ///< to the index of the process
  std::uintptr_t nextHandle_ = 1;
  std::vector<std::string> ran_;
  std::vector<std::string> startedIn_;
};

}  // namespace simulated
