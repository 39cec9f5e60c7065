// What must have happened on the machine before the first component is installed.
#pragma once

#include <string>

#include "base/run.h"

namespace modQXInstallationMain {

/// Refuses products that are forbidden on this computer, and runs the pre-install programs that the product ini lists,
/// in their order. Without a product ini only the first is done. False when the product must not be installed; the
/// reason is recorded or logged then.
bool PreInstallActions(Run& run, const std::string& productIni);

}  // namespace modQXInstallationMain
