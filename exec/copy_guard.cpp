#include "exec/copy_guard.h"

#include <algorithm>

#include "base/error.h"
#include "base/paths.h"
#include "base/text.h"
#include "exec/folder_access.h"

namespace assistant {

void CopyGuard::makeTarget(const std::string& source, const std::string& target) {
  const std::vector<std::string> made = MakeFolder(services_.fso, target);
  // From the hold folder down: who owns a folder can put another one in the place of what is in it.
  std::vector<std::string> above;
  for (std::string path = FolderPart(target); IsBelowRoot(path); path = FolderPart(path)) {
    const bool isMade = std::find(made.begin(), made.end(), path) != made.end();
    const bool isHeld = !holdRoot_.empty() && StartsWithIgnoringCase(path + "\\", holdRoot_ + "\\");
    if (isMade || isHeld) above.insert(above.begin(), path);
  }
  for (const std::string& path : above) {
    enter({"", path, std::find(made.begin(), made.end(), path) != made.end()});
  }
  enter({source, target, !made.empty()});
}

void CopyGuard::enter(const clsFso::CopiedFolder& folder) {
  if (!holdRoot_.empty()) {
    makeSafe(folder);
  } else if (onNetwork(folder.to)) {
    later_.push_back(folder);
  } else {
    guard(folder);
  }
}

void CopyGuard::finish() {
  for (; !later_.empty(); later_.pop_back()) {
    const clsFso::CopiedFolder& folder = later_.back();
    if (folder.made && !folder.from.empty()) guardFiles(folder.to);
    guard(folder);
  }
}

void CopyGuard::guard(const clsFso::CopiedFolder& folder) {
  platform::Files& files = services_.machine.files();
  folder.made ? GuardMade(files, here_, folder.to) : GuardKept(files, here_, folder.to);
}

void CopyGuard::makeSafe(const clsFso::CopiedFolder& folder) {
  try {
    if (!IsBelowRoot(folder.to) && KeepsAccess(services_.machine.files(), folder.to)) {
      throw here_.failure("it is the root of a drive");
    }
    if (folder.made) guard(folder);
    const bool isGuarded = Tighten(services_, here_, folder.to);
    if (!isGuarded || folder.from.empty()) return;
    // The root may hold the copies of other components.
    const bool isShared = EqualIgnoringCase(folder.to, holdRoot_);
    DeleteStrangers(services_, here_, folder.to, folder.from, isShared ? Strangers::GuardedStay : Strangers::Go);
  } catch (const Error& failure) {
    throw here_.failure("The hold folder " + folder.to + " could not be made safe, so nothing is run from it: " +
                        failure.text() + ". Delete it, or give CopyOpHold another folder.");
  }
}

/// What came in before the folder was guarded has what the folder above grants.
void CopyGuard::guardFiles(const std::string& folder) {
  for (const std::string& name : services_.fso.listFiles(folder)) {
    GuardMade(services_.machine.files(), here_, Joined(folder, name));
  }
}

bool CopyGuard::onNetwork(const std::string& path) {
  if (path.compare(0, 2, "\\\\") == 0) return true;
  const std::vector<platform::Drive> drives = services_.machine.files().drives();
  return std::any_of(drives.begin(), drives.end(), [&](const platform::Drive& drive) {
    return drive.type == platform::DriveType::Remote && StartsWithIgnoringCase(path, std::string(1, drive.letter));
  });
}

}  // namespace assistant
