// Copying the product's data from the ini files into the registry, which is the working record from then on.
#pragma once

#include "base/run.h"

namespace modQXInstallationMain {

/// Product part: the application ini's values, under the products key and under the product's own, and the lists of
/// forced uninstalls and deletes. False after a failure, which is logged.
bool StoreAppData(Run& run);

/// Version part: compares the product ini's version with the recorded one, and lists the product's components. A
/// difference that the user does not accept (a silent run accepts none) ends the program (throws ProgramEnd).
void StoreProductData(Run& run);

}  // namespace modQXInstallationMain

/// Reads the application ini's lists of forced uninstalls and deletes into the run; sections that are not there are
/// empty lists.
void ReadForcedLists(Run& run);
