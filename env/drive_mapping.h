// The network drive through which a run reaches its packages on a build server.
#pragma once

#include "base/run.h"

/// Maps the build server's package share to a drive letter when the product ini's [Connection] section asks for it, and
/// keeps the drive in the run, whose closedown removes the mapping. Does nothing while no product ini is known or a
/// drive is mapped already. Settings that cannot be used are a warning.
void MapDriveIfRequired(Run& run);
