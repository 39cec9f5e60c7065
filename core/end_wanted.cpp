#include "core/end_wanted.h"

#include "core/closedown.h"
#include "core/display.h"
#include "core/run_stops.h"

namespace assistant {

void BeginWork(const Run& run) {
  run.machine.mainWindow().objectToSessionEnd(true);
  if (run.state.sessionEnded) throw RunStops{.how = RunStops::How::AtOnce, .exitCode = ExitCodeOf(run)};
}

void EndIfWanted(const Services& services) {
  services.window.pump();
  if (services.window.endWanted()) throw RunStops{RunStops::How::Cancelled, UserAbortedRun};
}

}  // namespace assistant
