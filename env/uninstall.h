// Taking components off again.
#pragma once

#include <string>

#include "base/run.h"

namespace modQXInstallationMain {

/// Removes one component: a package through msiexec, anything else by its recorded command. One that other products
/// still use is left in place unless `force` is set. True when it is gone.
bool ExecuteUninstall(Run& run, const std::string& component, bool isMsi, bool force);

}  // namespace modQXInstallationMain

/// Removes the components of the current product in the reverse order of their installation.
void StartUninstall(Run& run);
