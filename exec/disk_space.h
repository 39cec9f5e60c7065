// Room for a component on the drives that it needs.
#pragma once

#include "base/run.h"

/// True when every share listed in the current component's "Cost" lies on a drive with more room than it needs. A
/// component without a cost needs none.
bool CheckDiskSpace(Run& run);
