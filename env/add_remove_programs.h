// The product's place in the system's list of programs that can be removed.
#pragma once

#include "base/run.h"

/// Keeps a local copy of the program and enters the product in the list, when the product ini's [Product]
/// "CanUninstall" asks for it.
void SetLocalIAForUninstall(Run& run);

/// Removes the product's records and its entry after an uninstall. One that could not be deleted marks the product as
/// failed.
void CleanUpUninstallFiles(Run& run);

/// Ends the mark of the removal, behind everything that belongs to it; nothing where the uninstall failed.
void ForgetCleanUp(Run& run);

/// True when the removal of the current product's records began and did not come to its end.
bool IsCleanUpUnfinished(Run& run);
