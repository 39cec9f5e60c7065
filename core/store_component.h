// Copying one component's data from its ini file into the registry.
#pragma once

#include <string>

#include "base/ini.h"
#include "base/run.h"

namespace assistant {

struct StoredComponent {
  enum class End {
    Failed,
    IniMissing,
    BadName,  ///< no component can be called so: the product has failed, its other components are installed
    Stored,   ///< or passed over, as an entry without a value is
  };
  End end = End::Stored;
  std::string reason = {};  ///< of a failure, which is logged
};

/// Writes the record of the component that this entry of the product ini's [Actions] section names; `index` is its
/// place in the product, counted from 1. An entry without a value is a warning and writes nothing.
StoredComponent StoreComponentData(const Run& run, const modINI::IniEntry& entry, int index);

}  // namespace assistant
