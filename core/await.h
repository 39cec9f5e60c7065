// Waiting for what a machine brings up only after its logon: a disc that spins up, a network that logs on.
#pragma once

#include <functional>
#include <string>

#include "base/procedure.h"
#include "base/run.h"

namespace assistant {

/// True when it is there. A resumed run looks again every second for up to two minutes, which one row tells; a person
/// who closes the window meanwhile ends the run (RunStops). `what` begins that row's sentence.
bool IsThereInTime(const Run& run, const Procedure& here, const std::string& what,
                   const std::function<bool()>& isThere);

}  // namespace assistant
