#include "exec/version_folders.h"

#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"
#include "exec/unfinished_copy.h"
#include "exec/versions.h"

namespace assistant {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Position behind the first point with a digit after it (and, with `digitBefore`, one before it) at or behind `from`.
std::size_t BehindPoint(const std::string& name, std::size_t from, bool digitBefore) {
  for (std::size_t at = from; at + 1 < name.size(); ++at) {
    const bool before = !digitBefore || (at > from && IsDigit(name[at - 1]));
    if (name[at] == '.' && before && IsDigit(name[at + 1])) return at + 2;
  }
  return std::string::npos;
}

bool IsVersion(const std::string& text) {
  return !text.empty() && text.find_first_not_of("v.0123456789") == std::string::npos;
}

/// A folder that a copy was delivered to.
struct DeliveredVersion {
  std::string parent;
  std::string name;
};

bool IsNewerOnServer(clsFso& fso, const Procedure& here, const DeliveredVersion& found, const std::string& version) {
  const auto& [parent, name] = found;
  if (!Contains(name, ".") || !Contains(name, "v")) return false;
  // No separator stands between the folder and the name.
  here.action("Found a version installed on the server at: " + parent + name);
  if (HoldsUnfinishedCopy(fso, Joined(parent, name))) {
    here.action("The copy at " + Joined(parent, name) + " was never finished and does not count");
    return false;
  }
  const bool newer = IsNewerVersion(here.log(), name, version);
  here.action(newer ? "Version already on the server is newer" : "Version included with this install is newer");
  return newer;
}

}  // namespace

bool IsVersionFolderName(const std::string& name) {
  std::size_t at = BehindPoint(name, 0, true);
  for (int further = 0; further < 2 && at != std::string::npos; ++further) at = BehindPoint(name, at, false);
  return at != std::string::npos;
}

bool CopyOpOneExistingVersionIsNewer(const Services& services, const Component& component, const CopyTargets& targets) {
  const Procedure here(services.log, "CopyOpOneExistingVersionIsNewer");
  const std::string version = LastElement(component.path);
  if (!IsVersion(version)) return false;
  bool result = false;
  for (const std::string& target : targets.folders) {
    const std::string location = CopyDestination(component, target, targets.appendPath);
    if (!targets.appendPath && !ContainsIgnoringCase(location, component.path)) continue;
    const std::string parent = FolderPart(location);
    for (const std::string& name : services.fso.listFolders(parent)) {
      result = IsNewerOnServer(services.fso, here, {parent, name}, version) || result;
    }
  }
  return result;
}

bool DeleteCopyOp(const Services& services, const std::string& path) {
  const Procedure here(services.log, "modMain.DeleteCopyOp");
  if (!IsVersionFolderName(LowerCase(LastElement(path)))) return true;
  const auto deleteAll = [&] {
    const std::string parent = FolderPart(path) + "\\";
    here.detail("Product Root is " + parent);
    for (const std::string& name : services.fso.listFolders(parent)) {
      if (!IsVersionFolderName(LowerCase(name))) continue;
      here.detail("Deleting " + parent + name);
      DeleteCopy(services, parent + name);
    }
    return true;
  };
  return here.guard(deleteAll, Shown::UnlessSilent);
}

}  // namespace assistant
