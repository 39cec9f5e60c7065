// Copying the product's data from the ini files into the registry, which is the working record from then on.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/ini.h"
#include "base/run.h"

namespace assistant {

/// Which of a product's discs is being stored.
enum class Disc { First, Further };

/// Product part: the application ini's values, under the products key and under the product's own, and the lists of
/// forced uninstalls and deletes. The text of a failure,
/// which is logged; nothing when there was none.
std::optional<std::string> StoreAppData(Run& run, Disc disc);

/// Version part: compares the product ini's version with the recorded one, and lists the entries of the product's
/// components, each once and none that a disc before this one had (`earlier`). A difference that the user does not
/// accept (a silent run accepts none) stops the run (RunStops).
std::vector<modINI::IniEntry> StoreProductData(const Run& run, const std::vector<std::string>& earlier);

/// The application ini's lists of forced uninstalls and deletes; sections that are not there are empty lists.
ForcedLists ReadForcedLists(const Run& run);

}  // namespace assistant
