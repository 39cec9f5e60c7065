#include "app/qxia/run_demo.h"

#include <cstdio>
#include <filesystem>
#include <string>

#include "app/qxia/report.h"
#include "core/program.h"
#include "platform/simulated/declaration.h"
#include "platform/simulated/text.h"
#include "platform/simulated/workstation.h"

namespace qxia {
namespace {

constexpr int MostRestarts = 50;

struct Options {
  std::string state;
  std::string media;
  std::string machine;
  std::string arguments;
};

/// The sample product beside this command in the output folder, on a workstation that is made anew.
Options SampleOptions() {
  const std::filesystem::path out = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
  const std::filesystem::path sample = out / "samples" / "harbour_suite";
  if (!std::filesystem::exists(sample / "disc")) {
    simulated::Refuse((sample / "disc").string() + " is not there: make the sample product with samples/build");
  }
  const std::filesystem::path state = out / "demo" / "rehearsal";
  std::filesystem::remove_all(state);
  return {state.string(), (sample / "disc").string(), (sample / "machine.txt").string(), ""};
}

Options ReadOptions(const Arguments& arguments) {
  if (!arguments.has("--state")) return SampleOptions();
  Options options{arguments.text("--state"), arguments.text("--media"), arguments.text("--machine"), ""};
  for (const std::string& word : arguments.operands())
    options.arguments += (options.arguments.empty() ? "" : " ") + word;
  return options;
}

void SetUp(const Options& options, simulated::Workstation& workstation) {
  if (!options.media.empty()) workstation.mount('D', options.media, platform::DriveType::CdRom, "DISC1");
  if (!options.machine.empty()) simulated::LoadMachine(options.machine, workstation);
  simulated::Machine& machine = workstation.machine();
  if (!options.arguments.empty()) machine.setProgram(machine.programPath(), options.arguments);
}

/// Restarts the machine and takes the program's command line from the logon; false when the logon does not start it.
bool StartedByLogon(simulated::Workstation& workstation) {
  workstation.restart();
  simulated::Machine& machine = workstation.machine();
  const std::string program = "\"" + machine.programPath() + "\"";
  for (const std::string& command : workstation.logonCommands()) {
    if (!simulated::StartsWithText(command, program)) continue;
    machine.setCommandLine(command);
    return true;
  }
  return false;
}

int RunWithRestarts(simulated::Workstation& workstation) {
  int exitCode = assistant::RunProgram(workstation);
  for (int restarts = 0; workstation.restartRequested() && restarts < MostRestarts; ++restarts) {
    if (!StartedByLogon(workstation)) break;
    exitCode = assistant::RunProgram(workstation);
  }
  return exitCode;
}

int Run(const Options& options) {
  simulated::Workstation workstation(options.state);
  SetUp(options, workstation);
  const int exitCode = RunWithRestarts(workstation);
  PrintEffects(workstation);
  PrintProducts(workstation);
  PrintLooseEnds(workstation);
  std::printf("\nexit code %d\n", exitCode);
  return exitCode;
}

}  // namespace

int RunDemo(const Arguments& arguments) {
  return Run(ReadOptions(arguments));
}

}  // namespace qxia
