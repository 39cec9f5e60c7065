// Taking a product off again.
#pragma once

#include "base/run.h"

namespace assistant {

/// Removes the components of the product in the reverse order of their installation, sparing those that other products
/// use, and records each. A removal that failed marks the product as failed, and so does a product without records of
/// components (6095).
void StartUninstall(Run& run);

}  // namespace assistant
