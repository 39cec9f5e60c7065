// Going on after a restart that the program caused.
#pragma once

#include "base/run.h"

namespace assistant {

/// True when this run goes on with one that restarted the machine; it is silent and verbose as that one was, from
/// before its first question.
bool ResumesRun(Run& run);

/// Restores the run from the registry, removes the script that started it and shows the window or the tray icon. Its
/// work goes on with the component after "LastSequence". Checks of the configuration that fail stop the run (RunStops).
void StartFromReboot(Run& run);

}  // namespace assistant
