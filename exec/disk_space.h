// Room for a component on the drives that it needs.
#pragma once

#include "base/component.h"
#include "base/run.h"

namespace assistant {

/// True when every share listed in the component's "Cost" lies on a drive with more room than it needs. A component
/// without a cost needs none.
bool CheckDiskSpace(const Run& run, const Component& component);

}  // namespace assistant
