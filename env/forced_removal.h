// Clearing away what would stand in a product's way.
#pragma once

#include "base/run.h"

/// Uninstalls the products of the forced-uninstall list, whether or not this program installed them.
bool ForceUninstall(Run& run);

/// Deletes the files and folders of the forced-delete list.
void ForceDelete(Run& run);
