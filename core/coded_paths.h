// Coded paths: letters, optionally followed by a path in parentheses, of which the first two letters say where to look,
// such as CDROM(\Setup).
#pragma once

#include <string>
#include <vector>

#include "base/file_system.h"
#include "platform/files.h"

namespace assistant {

enum class PathCode { None, CdRom, Floppy, Registry, Current, AppIniFolder };

struct CodedPath {
  PathCode code = PathCode::None;
  std::string inner;  ///< the path in the parentheses; "" without them
};

/// Takes a coded path apart. A text with anything but letters before its parentheses is none.
CodedPath TakeApart(const std::string& coded);

/// The same, but the first two letters alone select the code, whatever follows them.
CodedPath TakeApartByLetters(const std::string& coded);

/// The drives of that kind in their order, the preferred one (0 for none) first.
std::vector<char> DrivesFor(platform::FileReader& files, PathCode code, char preferred);

/// The first path on one of these drives for which `exists` is true; "" when there is none. Without a path in the
/// parentheses that is the root of the first ready drive.
std::string FindOnDrives(clsFso& fso, const std::vector<char>& drives, const CodedPath& coded,
                         bool (clsFso::*exists)(const std::string&));

}  // namespace assistant
