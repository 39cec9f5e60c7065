// A component of the product in the registry.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/simulated/registry.h"

namespace qxia {

/// A component as the product's record has it.
struct ComponentRecord {
  std::string name;
  int sequence = 0;
  std::map<std::string, std::string> values;  ///< "Install", "Process Return", ...

  std::string value(const std::string& name) const {
    const auto found = values.find(name);
    return found == values.end() ? "" : found->second;
  }
};

/// The components of the product, in the order of their sequence.
std::vector<ComponentRecord> ReadComponents(const simulated::Registry& registry, const std::string& product);

}  // namespace qxia
