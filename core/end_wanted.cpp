#include "core/end_wanted.h"

#include "core/display.h"
#include "core/run_stops.h"

namespace assistant {

void BeginWork(const Run& run) {
  run.machine.mainWindow().objectToSessionEnd(true);
}

void EndIfWanted(const Services& services) {
  services.window.pump();
  if (services.window.endWanted()) throw RunStops{RunStops::How::Cancelled, UserAbortedRun};
}

}  // namespace assistant
