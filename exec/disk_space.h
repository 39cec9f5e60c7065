// Room for a component on the drives that it needs.
#pragma once

#include <string>
#include <vector>

#include "base/component.h"
#include "base/run.h"

namespace assistant {

/// What a component needs on one share.
struct ShareCost {
  std::string share;
  std::string cost;  ///< kilobytes
};

/// The needs of a cost that are looked at. The first field and the one behind the last comma never are.
std::vector<ShareCost> CheckedCosts(const std::string& cost);

/// True when every share listed in the component's "Cost" lies on a drive with more room than it needs. A component
/// without a cost needs none.
bool CheckDiskSpace(const Run& run, const Component& component);

}  // namespace assistant
