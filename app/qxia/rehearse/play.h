// One rehearsal from its first start to its end, restarts and started copies included.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "app/qxia/rehearse/workplace.h"

namespace qxia {

struct Limits {
  std::int64_t milliseconds = 24LL * 60 * 60 * 1000;  ///< of the machine's time
  int restarts = 50;
};

/// Runs the program once and returns its exit code.
using RunOnce = std::function<int(simulated::Workstation&)>;

struct Played {
  int exitCode = 0;        ///< the program's last
  std::string unfinished;  ///< why the run did not end by itself; "" where it did
  int restarts = 0;
  std::int64_t begin = 0;  ///< of the machine's time
  std::int64_t end = 0;
};

/// Plays the run through: restarts with their logon, by hand or by automatic logon, and copies that the program starts
/// of itself. It always ends: a limit that is reached makes it unfinished, and so does a restart behind which nothing
/// starts the program although its run is to go on.
Played Play(Workplace& workplace, const Limits& limits, const RunOnce& runOnce);

/// The program as it stands.
int RunTheProgram(simulated::Workstation& machine);

/// Starts the machine anew and gives the program the command line by which the logon starts it; false when it does not.
bool LogOnAgain(simulated::Workstation& machine);

/// Whether the record says that a run waits for its restart to go on.
bool WaitsForRestart(const simulated::Workstation& machine);

}  // namespace qxia
