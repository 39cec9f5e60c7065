// Going on after a restart that the program caused.
#pragma once

#include "base/procedure.h"
#include "base/run.h"

namespace assistant {

/// True when this run goes on with one that restarted the machine; it is silent and verbose as that one was, from
/// before its first question.
bool ResumesRun(Run& run);

/// Makes the product whose restart is pending the run's, before any file is looked for. Where this start is for another
/// product, both are named by a warning, and the pending one goes on from the ini files that it began with. Raises an
/// error when those are not known. `here` is the procedure that starts the run.
void KnowPendingProduct(Run& run, const Procedure& here);

/// Restores the run from the registry and from its media, for which it waits; then removes the script that started it.
/// Its work goes on with the component after "LastSequence". Without product ini or package root the run stops
/// (RunStops).
void StartFromReboot(Run& run);

}  // namespace assistant
