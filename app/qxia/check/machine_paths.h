// Paths of the machine that the media speak of.
#pragma once

#include <string>

#include "app/qxia/check/media_model.h"

namespace qxia::check {

/// The path with a share of these media in its place; nothing where it is neither a full path nor on such a share.
std::optional<std::string> MachinePath(const MediaModel& media, const std::string& path);

/// True for a folder that belongs to the system: the Windows folder, its system folders, that of the programs.
bool IsSystemFolder(const std::string& path);
/// True for such a folder, or one below the Windows folder.
bool IsInSystemFolder(const std::string& path);

}  // namespace qxia::check
