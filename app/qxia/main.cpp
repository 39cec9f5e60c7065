// The Linux command line over the simulated workstation.
#include <string>
#include <vector>

#include "app/qxia/check/check.h"
#include "app/qxia/command.h"
#include "app/qxia/logs/fleet_verb.h"
#include "app/qxia/logs/log_verb.h"
#include "app/qxia/machine/machine.h"
#include "app/qxia/new_media/new_verb.h"
#include "app/qxia/rehearse/rehearse.h"

namespace {

constexpr qxia::Verb Verbs[] = {
    {"new", "DIR", "makes media to start from, every key with a comment", qxia::NewOptions,
     "0 made, 64 bad usage, a folder that is not empty, or no wixl where packages are asked for", qxia::MakeNewMedia},
    {"check", "MEDIA...", "tells what is wrong with media, without running anything", qxia::CheckOptions,
     "0 no error (--strict: and no warning), 1 otherwise; 64 when the media could not be looked at", qxia::Check},
    {"rehearse", "MEDIA...", "runs the program on simulated workstations and tells what happens", qxia::RehearseOptions,
     qxia::RehearseExitCodes, qxia::RehearseMedia},
    {"machine", "MEDIA...", "prints a machine file for rehearsals of these media", qxia::MachineOptions,
     "0; 64 when the media could not be read", qxia::PrintMachine},
    {"log", "FILE...", "tells what became of each component, from the program's HTML logs", qxia::LogOptions,
     "0 every file was read, 1 one could not be read or not whole (it is named), 64 bad usage", qxia::ShowLogs},
    {"fleet", "DIR", "tells what became of many machines, from a folder of logs for each", qxia::FleetOptions,
     "0 every file was read, 1 one could not be read or not whole (it is named), 64 bad usage", qxia::ShowFleet},
};

}  // namespace

int main(int count, char** words) {
  return qxia::RunCommand(Verbs, std::vector<std::string>(words + 1, words + count));
}
