// The work of a run once it is prepared: everything that is installed, disc by disc, or everything that is removed.
#pragma once

#include "base/run.h"

namespace assistant {

/// Does the work. A failure is logged and recorded, and what can go on goes on; a restart and a person's wish stop the
/// run (RunStops).
void DoContinue(Run& run);

}  // namespace assistant
