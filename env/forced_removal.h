// Clearing away what would stand in a product's way.
#pragma once

#include "base/run.h"

namespace assistant {

enum class ForcedEnd {
  Done,
  RestartWanted,  ///< the product asks for a restart behind the forced uninstalls
};

/// Uninstalls the products of the forced-uninstall list, whether or not this program installed them. Where a person has
/// confirmed the end of the run, the rest is left, and so it is by the deletes.
ForcedEnd ForceUninstall(const Run& run);

/// Deletes the files and folders of the forced-delete list.
void ForceDelete(const Run& run);

}  // namespace assistant
