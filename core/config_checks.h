// What this machine is like, recorded for the components.
#pragma once

#include "base/run.h"

namespace assistant {

/// Writes the machine's folders, name, operating system and CD drive under the installation key, fills the drive table,
/// reads the machine type and makes the folder for the Windows Installer logs. A failure is logged and stops the run
/// (RunStops): what the components are checked against is not known.
void ConfigChecks(Run& run);

}  // namespace assistant
