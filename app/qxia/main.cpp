// The Linux command line over the simulated workstation.
#include <string>
#include <vector>

#include "app/qxia/command.h"
#include "app/qxia/logs/fleet_verb.h"
#include "app/qxia/logs/log_verb.h"
#include "app/qxia/new_media/new_verb.h"
#include "app/qxia/run_demo.h"

namespace {

constexpr qxia::Verb Verbs[] = {
    {"log", "FILE...", "tells what became of each component, from the program's HTML logs", qxia::LogOptions,
     "0 every file was read, 1 one could not be read or not whole (it is named), 64 bad usage", qxia::ShowLogs},
    {"fleet", "DIR", "tells what became of many machines, from a folder of logs for each", qxia::FleetOptions,
     "0 every file was read, 1 one could not be read or not whole (it is named), 64 bad usage", qxia::ShowFleet},
    {"new", "DIR", "makes media to start from, every key with a comment", qxia::NewOptions,
     "0 made, 64 bad usage, a folder that is not empty, or no wixl where packages are asked for", qxia::MakeNewMedia},
    {"run-demo", "[-- ARGUMENTS]", "installs on a simulated workstation and prints what was done", qxia::RunDemoOptions,
     "that of the program (0 succeeded, 1 failed, 2 cancelled, 3 another copy runs, 4 another\n"
     "product's restart was pending and was carried on); 64 when the run could not be set up",
     qxia::RunDemo},
};

}  // namespace

int main(int count, char** words) {
  return qxia::RunCommand(Verbs, std::vector<std::string>(words + 1, words + count));
}
