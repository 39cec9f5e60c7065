// What this machine is like, recorded for the components.
#pragma once

#include "base/run.h"

namespace assistant {

/// Writes the machine's folders, name, operating system and CD drive under the installation key, fills the drive table,
/// reads the machine type and makes the folder for the Windows Installer logs. False after a failure, which is logged.
bool ConfigChecks(Run& run);

}  // namespace assistant
