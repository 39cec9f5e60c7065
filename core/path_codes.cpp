#include "core/path_codes.h"

#include <algorithm>
#include <vector>

#include "base/paths.h"
#include "base/text.h"

namespace {

struct CodeLetters {
  const char* letters;
  PathCode code;
  std::size_t innerAt;  ///< where the inner path starts, whatever stands before it; 0: behind the parenthesis
};

// The two drive codes count characters: they are written CDROM( and FLOPPY(.
constexpr CodeLetters codes[] = {
    {"CD", PathCode::CdRom, 6},   {"FL", PathCode::Floppy, 7},       {"RE", PathCode::Registry, 0},
    {"CU", PathCode::Current, 0}, {"PA", PathCode::AppIniFolder, 0},
};

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

std::string Inner(const std::string& spec, std::size_t open, std::size_t innerAt) {
  if (open == std::string::npos) return std::string();
  const std::size_t start = innerAt == 0 ? open + 1 : innerAt;
  return start + 1 >= spec.size() ? std::string() : spec.substr(start, spec.size() - start - 1);
}

}  // namespace

CodedPath TakeApart(const std::string& spec) {
  const std::size_t open = spec.find('(');
  const std::string letters = spec.substr(0, open);
  const bool closed = open == std::string::npos || spec.back() == ')';
  if (letters.size() < 2 || !closed || !std::all_of(letters.begin(), letters.end(), IsLetter)) return {};
  return TakeApartByLetters(spec);
}

CodedPath TakeApartByLetters(const std::string& spec) {
  for (const CodeLetters& entry : codes) {
    if (StartsWithIgnoringCase(spec, entry.letters)) return {entry.code, Inner(spec, spec.find('('), entry.innerAt)};
  }
  return {};
}

std::string FindOnDrives(Run& run, const CodedPath& spec, bool (clsFso::*exists)(const std::string&)) {
  const platform::DriveType wanted =
      spec.code == PathCode::CdRom ? platform::DriveType::CdRom : platform::DriveType::Removable;
  std::vector<platform::Drive> drives = run.machine.files().drives();
  // A later disc of a product may have been put into another drive than the first one, which still has its disc.
  std::stable_partition(drives.begin(), drives.end(),
                        [&](const platform::Drive& drive) { return drive.letter == run.discDrive; });
  for (const platform::Drive& drive : drives) {
    if (drive.type != wanted) continue;
    const std::string root = std::string(1, drive.letter) + ":\\";
    const std::string path = Normalised(root + spec.inner);
    // A root is looked at with its backslash: without it, the path would mean the drive's current folder.
    if ((run.fso.*exists)(path.size() == 2 ? root : path)) return path;
  }
  return std::string();
}
