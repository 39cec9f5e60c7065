// Folders named for a version, of which one stands beside a copy's target for every version delivered.
#pragma once

#include <string>

#include "base/component.h"
#include "base/services.h"
#include "exec/copy_targets.h"

namespace assistant {

/// True for a name with four dotted numeric parts, such as v1.2.0.15. The name is in lower case.
bool IsVersionFolderName(const std::string& name);

/// True when a version folder beside a target is newer than the version that the component's path ends in. Components
/// that are not kept in version folders have none.
bool CopyOpOneExistingVersionIsNewer(const Services& services, const Component& component, const CopyTargets& targets);

/// Deletes every version folder that stands beside the path, read-only contents included; the path's own is one of
/// them. A path that does not end in a version deletes nothing. False when a folder could not be deleted, which ends
/// it; that is logged and shown.
bool DeleteCopyOp(const Services& services, const std::string& path);

}  // namespace assistant
