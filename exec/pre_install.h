// What must have happened on the machine before the first component is installed.
#pragma once

#include <string>

#include "base/run.h"

namespace assistant {

struct PreInstallEnd {
  bool passed = false;
  std::string reason;  ///< why the product is refused, where that is not logged alone
};

/// Refuses products that are forbidden on this computer, and runs the pre-install programs that the product ini lists,
/// in their order. Without a product ini ("") only the first is done.
PreInstallEnd PreInstallActions(const Run& run, const std::string& productIni);

}  // namespace assistant
