#include "exec/version_folders.h"

#include <algorithm>

#include "base/error_handler.h"
#include "base/paths.h"
#include "base/text.h"
#include "exec/copy_files.h"
#include "exec/copy_operations.h"
#include "exec/versions.h"

namespace {

constexpr const char* Source = "CopyOpOneExistingVersionIsNewer";

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

bool IsNewerOnServer(Run& run, const std::string& parent, const std::string& name, const std::string& version) {
  if (!Contains(name, ".") || !Contains(name, "v")) return false;
  // No separator stands between the folder and the name.
  run.log.Log(Source, 0, "Found a version installed on the server at: " + parent + name);
  if (HoldsUnfinishedCopy(run, Joined(parent, name))) {
    run.log.Log(Source, 0, "The copy at " + Joined(parent, name) + " was never finished and does not count");
    return false;
  }
  const bool newer = IsNewerVersion(run, name, version);
  run.log.Log(Source, 0,
              newer ? "Version already on the server is newer" : "Version included with this install is newer");
  return newer;
}

}  // namespace

bool IsVersionFolderName(const std::string& name) {
  std::size_t at = BehindPoint(name, 0, true);
  for (int further = 0; further < 2 && at != std::string::npos; ++further) at = BehindPoint(name, at, false);
  return at != std::string::npos;
}

bool CopyOpOneExistingVersionIsNewer(Run& run, const std::string& path, const CopyTargets& targets) {
  const std::string version = LastElement(path);
  if (!IsVersion(version)) return false;
  bool result = false;
  for (const std::string& target : targets.folders) {
    const std::string location = CopyDestination(run, target, targets.appendPath);
    if (!targets.appendPath && !ContainsIgnoringCase(location, path)) continue;
    const std::string parent = FolderPart(location);
    for (const std::string& name : run.fso.ListFolders(parent)) {
      result = IsNewerOnServer(run, parent, name, version) || result;
    }
  }
  return result;
}

void DeleteCopyOp(Run& run, const std::string& path) {
  if (!IsVersionFolderName(LowerCase(LastElement(path)))) return;
  GuardedAndShown(run, "modMain.DeleteCopyOp", [&] {
    const std::string parent = FolderPart(path) + "\\";
    if (run.verbose) run.log.Log("DeleteCopyOp", 0, "Product Root is " + parent);
    for (const std::string& name : run.fso.ListFolders(parent)) {
      if (!IsVersionFolderName(LowerCase(name))) continue;
      if (run.verbose) run.log.Log("DeleteCopyOp", 0, "Deleting " + parent + name);
      DeleteCopy(run, parent + name);
    }
  });
}
