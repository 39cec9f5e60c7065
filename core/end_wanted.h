// Where work begins, and a person's wish to end it.
#pragma once

#include "base/run.h"
#include "base/services.h"

namespace assistant {

/// From here on the program objects to the end of the session.
void BeginWork(const Run& run);

/// Stops the run (RunStops) when the window was closed while work ran and that was confirmed; to be called between two
/// components.
void EndIfWanted(const Services& services);

}  // namespace assistant
