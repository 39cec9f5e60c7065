// The Linux command line: rehearses a run of the program on a simulated workstation.
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/qxia/report.h"
#include "core/program.h"
#include "platform/simulated/declaration.h"
#include "platform/simulated/text.h"
#include "platform/simulated/workstation.h"

namespace {

constexpr int UsageError = 64;
constexpr int MostRestarts = 50;
constexpr const char* Usage =
    "qxia run-demo [--state DIR [--media DIR] [--machine FILE] [-- program arguments]]\n"
    "\n"
    "Runs the installer on a simulated workstation and prints what it did. Without options: installs the sample\n"
    "product (made by samples/build) on a fresh one.\n"
    "  --state DIR     where the workstation keeps its registry and drives; made when missing,\n"
    "                  gone on with when there is one from an earlier run\n"
    "  --media DIR     a folder with an installation disc's content: the CD-ROM drive D\n"
    "  --machine FILE  what the workstation is and what its programs do (platform/simulated/README.md)\n"
    "  -- ARGUMENTS    the program's own switches, such as /s /is=D:\\setup.ini\n"
    "\n"
    "Exit code: that of the program (0 succeeded, 1 failed, 2 cancelled, 3 another copy runs, 4 another\n"
    "product's restart was pending and was carried on); 64 when the\n"
    "rehearsal could not be set up.\n";

struct Options {
  std::string state;
  std::string media;
  std::string machine;
  std::string arguments;
};

std::string* Destination(Options& options, const char* name) {
  if (std::strcmp(name, "--state") == 0) return &options.state;
  if (std::strcmp(name, "--media") == 0) return &options.media;
  if (std::strcmp(name, "--machine") == 0) return &options.machine;
  return nullptr;
}

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

/// Raises std::runtime_error for what is not understood.
Options ParseOptions(int count, char** words) {
  if (count == 2) return SampleOptions();
  Options options;
  int i = 2;
  for (; i < count && std::strcmp(words[i], "--") != 0; i += 2) {
    std::string* destination = Destination(options, words[i]);
    if (destination == nullptr) simulated::Refuse(std::string(words[i]) + " is no option");
    if (i + 1 >= count) simulated::Refuse(std::string(words[i]) + " needs a value behind it");
    *destination = words[i + 1];
  }
  for (++i; i < count; ++i) options.arguments += (options.arguments.empty() ? "" : " ") + std::string(words[i]);
  if (options.state.empty()) simulated::Refuse("--state is missing");
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

int Rehearse(const Options& options) {
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

int main(int count, char** words) {
  if (count < 2 || std::strcmp(words[1], "run-demo") != 0) {
    std::fputs(Usage, count < 2 ? stdout : stderr);
    return count < 2 ? 0 : UsageError;
  }
  try {
    return Rehearse(ParseOptions(count, words));
  } catch (const std::runtime_error& refused) {
    std::fprintf(stderr, "qxia: %s\n", refused.what());
    return UsageError;
  }
}
