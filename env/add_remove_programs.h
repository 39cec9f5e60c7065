// The product's place in the system's list of programs that can be removed.
#pragma once

#include <optional>
#include <string>

#include "base/run.h"

namespace assistant {

/// Keeps a local copy of the program and enters the product in the list, when the product ini's [Product]
/// "CanUninstall" asks for it. The reason of a failure, which is logged; nothing when there was none.
std::optional<std::string> SetLocalIAForUninstall(const Run& run);

/// What the removal of a product's traces came to.
struct CleanUp {
  std::optional<std::string> failure;  ///< told in the log; what is left keeps its entry
  std::string programToRemove;         ///< local copy that no product needs any more; "" for none
};

/// Removes the product's records and its entry after an uninstall.
CleanUp CleanUpUninstallFiles(const Run& run);

/// Ends the mark of the removal, behind everything that belongs to it; nothing where the uninstall failed.
void ForgetCleanUp(const Run& run);

/// True when the removal of the product's records began and did not come to its end.
bool IsCleanUpUnfinished(const Run& run);

}  // namespace assistant
