#include "core/coded_paths.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"

namespace assistant {
namespace {

struct CodeLetters {
  const char* letters;
  PathCode code;
  std::size_t innerAt;  ///< where the inner path starts, whatever stands before it; 0: behind the parenthesis
};

// The two drive codes count characters: they are written CDROM( and FLOPPY(.
constexpr CodeLetters Codes[] = {
    {"CD", PathCode::CdRom, 6},   {"FL", PathCode::Floppy, 7},       {"RE", PathCode::Registry, 0},
    {"CU", PathCode::Current, 0}, {"PA", PathCode::AppIniFolder, 0},
};

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

std::string Inner(const std::string& coded, std::size_t open, std::size_t innerAt) {
  if (open == std::string::npos) return std::string();
  const std::size_t start = innerAt == 0 ? open + 1 : innerAt;
  return start + 1 >= coded.size() ? std::string() : coded.substr(start, coded.size() - start - 1);
}

}  // namespace

CodedPath TakeApart(const std::string& coded) {
  const std::size_t open = coded.find('(');
  const std::string letters = coded.substr(0, open);
  const bool closed = open == std::string::npos || coded.back() == ')';
  if (!closed || !std::all_of(letters.begin(), letters.end(), IsLetter)) return {};
  return TakeApartByLetters(coded);
}

CodedPath TakeApartByLetters(const std::string& coded) {
  for (const CodeLetters& entry : Codes) {
    if (StartsWithIgnoringCase(coded, entry.letters)) return {entry.code, Inner(coded, coded.find('('), entry.innerAt)};
  }
  return {};
}

std::vector<char> DrivesFor(platform::FileReader& files, PathCode code, char preferred) {
  const auto wanted = code == PathCode::CdRom ? platform::DriveType::CdRom : platform::DriveType::Removable;
  std::vector<char> letters;
  for (const platform::Drive& drive : files.drives()) {
    if (drive.type == wanted) letters.push_back(drive.letter);
  }
  // A later disc of a product may have been put into another drive than the first one, which still has its disc.
  std::stable_partition(letters.begin(), letters.end(), [&](char letter) { return letter == preferred; });
  return letters;
}

std::string FindOnDrives(clsFso& fso, const std::vector<char>& drives, const CodedPath& coded,
                         bool (clsFso::*exists)(const std::string&)) {
  for (const char letter : drives) {
    const std::string path = Normalised(std::string(1, letter) + ":\\" + coded.inner);
    if ((fso.*exists)(path)) return path;
  }
  return std::string();
}

}  // namespace assistant
