// The product's place in the system's list of programs that can be removed.
#pragma once

#include "base/run.h"

/// Keeps a local copy of the program and enters the product in the list, when the product ini's [Product]
/// "CanUninstall" asks for it.
void SetLocalIAForUninstall(Run& run);

/// Removes the product's records and its entry after an uninstall.
void CleanUpUninstallFiles(Run& run);
