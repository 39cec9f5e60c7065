// A person's wish to end a run that is at work.
#pragma once

#include "base/services.h"

namespace assistant {

/// Stops the run (RunStops) when the window was closed while work ran and that was confirmed; to be called between two
/// components.
void EndIfWanted(const Services& services);

}  // namespace assistant
