// Copies of the media for a workstation: what happens there never reaches the media themselves.
#pragma once

#include <string>
#include <vector>

namespace qxia {

/// How a file gets onto a staged disc.
enum class Staged {
  Linked,  ///< for a drive that cannot be written
  Copied,  ///< for a folder on a hard disk
};

/// Makes `target` a copy of the disc in `folder`. A link that leads out of the disc is left out, and named in the
/// result. Raises UsageError for what cannot be read. The program's own file is added where the disc has none.
std::vector<std::string> StageDisc(const std::string& folder, const std::string& target, Staged how);

/// The program's file name, as media and Startup script name it.
std::string ProgramFileName();

}  // namespace qxia
