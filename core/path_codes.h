// Path specifications: letters, optionally followed by a path in parentheses, of which the first two letters say where
// to look, such as CDROM(\Setup).
#pragma once

#include <string>

#include "base/run.h"

enum class PathCode { None, CdRom, Floppy, Registry, Current, AppIniFolder };

struct PathSpecification {
  PathCode code = PathCode::None;
  std::string inner;  ///< the path in the parentheses; "" without them
};

/// Takes a specification apart. A text with anything but letters before its parentheses is none.
PathSpecification TakeApart(const std::string& spec);

/// The same, but the first two letters alone select the code, whatever follows them.
PathSpecification TakeApartByLetters(const std::string& spec);

/// The first path on a drive of the specification's kind, in drive order, for which `exists` is true; "" when there is
/// none. Without a path in the specification that is the root of the first ready drive.
std::string FindOnDrives(Run& run, const PathSpecification& spec, bool (clsFso::*exists)(const std::string&));
