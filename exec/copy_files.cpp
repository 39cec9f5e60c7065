#include "exec/copy_files.h"

#include <algorithm>
#include <vector>

#include "base/error.h"
#include "base/error_texts.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"
#include "exec/copy_guard.h"
#include "exec/unfinished_copy.h"
#include "exec/version_folders.h"

namespace assistant {
namespace {

constexpr const char* Remedy = ". Give CopyOpTarget, CopyOpRoot or CopyOpHold a folder outside the package root.";

/// What is copied: the component's folder, looked at before anything is changed.
struct CopySource {
  std::string folder;
  std::vector<std::string> files;
  std::vector<std::string> subFolders;
};

CopySource LookAtSource(clsFso& fso, const Procedure& here, const std::string& folder) {
  CopySource source = {folder, fso.listFiles(folder), fso.listFolders(folder)};
  // Asked last: what vanishes while it is listed has no files either.
  if (!IsFullPath(folder) || !fso.folderExists(folder)) throw here.failure(6084, {folder});
  return source;
}

void CopyFiles(const Services& services, const Procedure& here, const CopySource& source,
               const std::string& destination) {
  for (const std::string& file : source.files) {
    const std::string from = Joined(source.folder, file);
    const std::string to = Joined(destination, file);
    here.detail("Copying file " + from + " to " + to);
    services.fso.copyFileAnew(from, to);
  }
}

/// True for a path whose text alone says whether it lies in another one.
bool IsPlain(const std::string& path) {
  const std::vector<std::string> names = Split(path, '\\');
  return path.find('/') == std::string::npos && (path.find(':') != 1 || names.front().size() == 2) &&
         std::none_of(names.begin(), names.end(), IsDots);
}

/// Clearing the versions at such a target would delete the source, and the copy would never come to an end.
void RequireOutsideSource(const Procedure& here, const CopySource& source, const std::string& destination) {
  if (!StartsWithIgnoringCase(destination + "\\", source.folder + "\\")) return;
  throw here.failure("The copy's target " + destination + " lies in the component's own folder " + source.folder +
                     Remedy);
}

/// A target that could mean several folders, or that cannot be made, deletes nothing beside it.
void RequireUsableTarget(const Procedure& here, const CopySource& source, const std::string& destination) {
  if (!IsFullPath(destination) || !IsPlain(destination)) {
    throw here.failure("The copy's target " + destination +
                       " is neither a full path without / . .. nor on a known share" + Remedy);
  }
  if (destination.size() > clsFso::LongestPath) throw here.failure(6021, {destination});
  RequireOutsideSource(here, source, destination);
}

/// What is to be copied must not be among the versions beside the target, which are going to be deleted.
void RequireApartFromOldVersions(const Procedure& here, const CopySource& source, const std::string& destination) {
  if (!IsPlain(source.folder)) {
    throw here.failure("The component's folder " + source.folder +
                       " is to be written without / . .. where older versions beside a copy are deleted. Correct "
                       "PackageRoot or Path.");
  }
  const std::string parent = FolderPart(destination) + "\\";
  if (IsVersionFolderName(LowerCase(LastElement(destination))) && StartsWithIgnoringCase(source.folder, parent) &&
      IsVersionFolderName(LowerCase(Split(source.folder.substr(parent.size()), '\\').front()))) {
    throw here.failure("The component's folder " + source.folder + " lies beside the copy's target " + destination +
                       ", where older versions are deleted" + Remedy);
  }
}

/// The copy is an administrator's, a link may be anybody's: it would lead the copy to whatever folder it names.
void RequireNoLink(clsFso& fso, const Procedure& here, const std::string& destination) {
  // Where the drive itself lies is the machine's business.
  for (std::string folder = destination; !FolderPart(folder).empty(); folder = FolderPart(folder)) {
    if (!fso.isLink(folder)) continue;
    throw here.failure(
        "The copy's target " + destination + " leads through " + folder +
        ", a link to another folder, which is not followed. Delete the link, or name the folder itself.");
  }
}

void CopyTo(const Services& services, const Procedure& here, const CopySource& source, CopyGuard& guard,
            const std::string& destination) {
  clsFso& fso = services.fso;
  guard.makeTarget(source.folder, destination);
  // Until then somebody else could have put one there.
  RequireNoLink(fso, here, destination);
  MarkUnfinished(fso, destination);
  CopyFiles(services, here, source, destination);
  for (const std::string& name : source.subFolders) {
    fso.copyFolderOver(Joined(source.folder, name), Joined(destination, name),
                       [&](const clsFso::CopiedFolder& folder) { guard.enter(folder); });
  }
  MarkFinished(fso, destination);
  guard.finish();  // behind that, the installer itself may be let in no more
}

/// True when the versions beside the target are the component's own. The root that a component without a path is copied
/// to may stand among the versions of something else.
bool ReplacesVersions(const Component& component, bool appendPath, const std::string& destination) {
  return !component.path.empty() && (appendPath || ContainsIgnoringCase(destination, component.path));
}

/// Why nothing is copied beside an older version that stays.
std::string OldVersionsText(const std::string& destination) {
  return "The older versions beside " + destination +
         " could not all be deleted. End what uses them, and start the installation again.";
}

void TellNothingToCopy(const Procedure& here, const Component& component, const CopySource& source) {
  here.action("Destination array has no data");
  here.warn("Nothing was copied for component " + component.name + ": " +
            (source.files.empty()
                 ? "its folder " + source.folder + " holds no file of its own. Put one there."
                 : "it has no target. Give it a CopyOpTarget, or the product CopyOpRoot and CopyOpHold."));
}

Copied Failed(const Procedure& here, const Error& failure, const std::string& destination) {
  here.tell(failure, Shown::Always);
  here.plain().error(8024, {destination}, Shown::Always);
  return {false, "Copying to " + destination + " failed"};
}

}  // namespace

Copied DoCopyOp(const Services& services, const Component& component, const CopyTargets& targets) {
  // What failed has always borne the name of the module; the row that names the target of the failed copy never did.
  const Procedure here(services.log, "DoCopyOp", "modMain.DoCopyOp");
  std::string destination = targets.first();
  // A failure becomes the result, with the target at which it happened.
  try {
    const CopySource source = LookAtSource(services.fso, here, component.folder);
    // A folder without files of its own is not copied: whoever delivers only sub-folders puts a file beside them.
    if (targets.first().size() < 2 || source.files.empty()) {
      TellNothingToCopy(here, component, source);
      return {};
    }
    for (const std::string& target : targets.folders) {
      destination = CopyDestination(component, target, targets.appendPath);
      RequireUsableTarget(here, source, destination);
      RequireNoLink(services.fso, here, destination);
      if (ReplacesVersions(component, targets.appendPath, destination)) {
        RequireApartFromOldVersions(here, source, destination);
        if (!DeleteCopyOp(services, destination)) throw here.failure(OldVersionsText(destination));
      }
      CopyGuard guard(services, here, targets.held ? Normalised(target) : "");
      CopyTo(services, here, source, guard, destination);
    }
    return {};
  } catch (const Error& failure) {
    return Failed(here, failure, destination);
  }
}

}  // namespace assistant
