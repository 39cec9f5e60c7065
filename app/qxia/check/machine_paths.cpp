#include "app/qxia/check/machine_paths.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"

namespace qxia::check {
namespace {

constexpr const char* WindowsFolders[] = {"windows", "winnt"};
constexpr const char* OtherFolders[] = {"program files", "program files\\common files", "documents and settings"};

/// In lower case, without its drive.
std::string BelowDrive(const std::string& path) {
  const std::string plain = assistant::LowerCase(assistant::Normalised(path));
  return plain.size() > 3 && plain[1] == ':' ? plain.substr(3) : "";
}

}  // namespace

std::optional<std::string> MachinePath(const MediaModel& media, const std::string& path) {
  if (assistant::IsFullPath(path)) return path;
  if (assistant::Contains(path, ":")) return std::nullopt;
  const std::string reference = path.substr(std::min(path.find_first_not_of('\\'), path.size()));
  const std::string name = reference.substr(0, reference.find('\\'));
  const std::string rest = name.size() < reference.size() ? reference.substr(name.size() + 1) : "";
  for (const Disc& disc : media.discs)
    for (const ShareFact& share : disc.shares)
      if (share.parsed.defect.empty() && assistant::EqualIgnoringCase(share.parsed.share.name, name))
        return rest.empty() ? share.parsed.share.folder : assistant::Joined(share.parsed.share.folder, rest);
  return std::nullopt;
}

bool IsSystemFolder(const std::string& path) {
  const std::string folder = BelowDrive(path);
  for (const std::string windows : WindowsFolders)
    if (folder == windows || folder == windows + "\\system" || folder == windows + "\\system32" ||
        folder == windows + "\\fonts")
      return true;
  return std::any_of(std::begin(OtherFolders), std::end(OtherFolders),
                     [&](const char* other) { return folder == other; });
}

bool IsInSystemFolder(const std::string& path) {
  const std::string folder = BelowDrive(path);
  for (const std::string windows : WindowsFolders)
    if (assistant::StartsWithIgnoringCase(folder, windows + "\\")) return true;
  return IsSystemFolder(path);
}

}  // namespace qxia::check
