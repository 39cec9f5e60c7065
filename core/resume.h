// Going on after a restart that the program caused.
#pragma once

#include "base/run.h"

/// True when this run goes on with one that restarted the machine; it is silent and verbose as that one was, from
/// before its first question.
bool ResumesRun(Run& run);

/// Restores the run from the registry, removes the script that started it, shows the window or the tray icon and goes
/// on with the component after "LastSequence". A silent run ends here (throws ProgramEnd).
void StartFromReboot(Run& run);

/// Takes a restart's request to go on back, when it is for the current product, which is installed no more.
void ForgetResume(Run& run);
