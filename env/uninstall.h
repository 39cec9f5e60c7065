// Taking a product off again.
#pragma once

#include "base/procedure.h"
#include "base/run.h"

namespace assistant {

/// Removes the components of the product in the reverse order of their installation, sparing those that other products
/// use, and records each. A removal that failed marks the product as failed, and so does a product without records of
/// components (6095).
void StartUninstall(Run& run);

/// From here on the product's record follows the uninstall: its result and place are set to their start, and a restart
/// behind which the product's installation was to go on is called off. What began already is left alone. An error where
/// this cannot be recorded: nothing is to be removed then.
void BeginRemoval(Run& run, const Procedure& here);

}  // namespace assistant
