// Path specifications: letters, optionally followed by a path in parentheses, of which the first two letters say where
// to look, such as CDROM(\Setup).
#pragma once

#include <string>

#include "base/run.h"

enum class PathCode { None, CdRom, Floppy, Registry, Current, AppIniFolder };

struct CodedPath {
  PathCode code = PathCode::None;
  std::string inner;  ///< the path in the parentheses; "" without them
};

/// Takes a path specification apart. A text with anything but letters before its parentheses is none.
CodedPath TakeApart(const std::string& spec);

/// The same, but the first two letters alone select the code, whatever follows them.
CodedPath TakeApartByLetters(const std::string& spec);

/// The first path on a drive of that kind, in drive order, for which `exists` is true; "" when there is
/// none. Without a path in the parentheses that is the root of the first ready drive.
std::string FindOnDrives(Run& run, const CodedPath& spec, bool (clsFso::*exists)(const std::string&));
