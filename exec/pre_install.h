// What must have happened on the machine before the first component is installed.
#pragma once

#include "base/run.h"

namespace modQXInstallationMain {

/// Refuses products that are forbidden on this computer and runs the product ini's pre-install programs in their order.
/// False when the product must not be installed; its failure is recorded then.
bool PreInstallActions(Run& run);

}  // namespace modQXInstallationMain
