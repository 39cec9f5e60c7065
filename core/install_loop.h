// Installing the components one after another.
#pragma once

#include "base/run.h"

/// What the Continue button means at this point: the whole install or uninstall sequence, another try at initialising,
/// or the end of the run (throws ProgramEnd).
void DoContinue(Run& run);

namespace modQXInstallationMain {

/// Installs the components whose sequence numbers lie above "LastSequence", in their order, and records each as it is
/// done. Restarts the machine where a component asks for that (throws ProgramEnd). At the end of the product's last
/// disc the product is registered and a deferred restart carried out. True when no component of this disc is left.
bool StartInstall(Run& run);

}  // namespace modQXInstallationMain
