#include "exec/copy_files.h"

#include <algorithm>
#include <vector>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/text.h"
#include "exec/copy_operations.h"
#include "exec/outcome.h"
#include "exec/version_folders.h"

namespace {

constexpr const char* Source = "modMain.DoCopyOp";
constexpr const char* Remedy = ". Give CopyOpTarget, CopyOpRoot or CopyOpHold a folder outside the package root.";
constexpr int CopyFailedError = 8024;

/// File that a destination holds while it is being copied to.
constexpr const char* UnfinishedMark = "QX copy not finished.txt";

/// What is copied: the component's folder, looked at before anything is changed.
struct CopySource {
  std::string folder;
  std::vector<std::string> files;
  std::vector<std::string> subFolders;
};

CopySource LookAtSource(Run& run) {
  const std::string& folder = run.component.path;
  CopySource source = {folder, run.fso.ListFiles(folder), run.fso.ListFolders(folder)};
  // Asked last: what vanishes while it is listed has no files either.
  if (!run.fso.FolderExists(folder)) {
    throw modErrorBase::MakeError(6084, {folder}, Source);
  }
  return source;
}

void CopyFiles(Run& run, const CopySource& source, const std::string& destination) {
  for (const std::string& file : source.files) {
    const std::string from = Joined(source.folder, file);
    const std::string to = Joined(destination, file);
    if (run.verbose) run.log.Log("DoCopyop", 0, "Copying file " + from + " to " + to);
    run.fso.CopyFileOver(from, to);
    // Nothing stays read-only that came from a CD.
    const platform::Status freed = run.machine.files().setAttributes(to, {});
    if (freed == platform::Status::Ok) continue;
    throw Error(Number(freed), modErrorBase::SystemErrorText(freed) + ": " + to, Source);
  }
}

/// The product's folders belong to the administrators and the system; everybody may run what is in them. Machines and
/// volumes without access control have nothing to set.
void SetPermissions(Run& run, const std::string& destination) {
  const platform::Status set =
      run.machine.files().setAccess(destination, {{platform::Account::Administrators, platform::AccessRight::Full},
                                                  {platform::Account::LocalSystem, platform::AccessRight::Full},
                                                  {platform::Account::Users, platform::AccessRight::ReadAndExecute}});
  if (set == platform::Status::Ok || set == platform::Status::CallNotImplemented) return;
  throw Error(Number(set),
              "The permissions of " + destination + " could not be set: " + modErrorBase::SystemErrorText(set), Source);
}

/// True for a path whose text alone says whether it lies in another one.
bool IsPlain(const std::string& path) {
  const std::vector<std::string> names = Split(path, '\\');
  return path.find('/') == std::string::npos && (path.find(':') != 1 || names.front().size() == 2) &&
         std::none_of(names.begin(), names.end(), [](const std::string& name) { return name == "." || name == ".."; });
}

/// Clearing the versions at such a target would delete the source, and the copy would never come to an end.
void RequireOutsideSource(const CopySource& source, const std::string& destination) {
  if (!StartsWithIgnoringCase(destination + "\\", source.folder + "\\")) return;
  throw Error(GeneralError,
              "The copy's target " + destination + " lies in the component's own folder " + source.folder + Remedy,
              Source);
}

/// A target that could mean several folders, or that cannot be made, deletes nothing beside it.
void RequireUsableTarget(const CopySource& source, const std::string& destination) {
  if (!IsFullPath(destination) || !IsPlain(destination)) {
    throw Error(
        GeneralError,
        "The copy's target " + destination + " is neither a full path without / . .. nor on a known share" + Remedy,
        Source);
  }
  if (destination.size() > clsFso::LongestPath) throw modErrorBase::MakeError(6021, {destination}, Source);
  RequireOutsideSource(source, destination);
}

/// The versions beside the target go. What is to be copied must not be among them.
void ClearOldVersions(Run& run, const CopySource& source, const std::string& destination) {
  if (!IsPlain(source.folder)) {
    throw Error(GeneralError,
                "The component's folder " + source.folder +
                    " is to be written without / . .. where older versions beside a copy are deleted. Correct "
                    "PackageRoot or Path.",
                Source);
  }
  const std::string parent = FolderPart(destination) + "\\";
  if (IsVersionFolderName(LowerCase(LastElement(destination))) && StartsWithIgnoringCase(source.folder, parent) &&
      IsVersionFolderName(LowerCase(Split(source.folder.substr(parent.size()), '\\').front()))) {
    throw Error(GeneralError,
                "The component's folder " + source.folder + " lies beside the copy's target " + destination +
                    ", where older versions are deleted" + Remedy,
                Source);
  }
  DeleteCopyOp(run, destination);
}

void MarkUnfinished(Run& run, const std::string& folder) {
  run.fso.WriteNewFile(
      Joined(folder, UnfinishedMark),
      std::string("The copy to this folder was begun and is not finished, or it is being deleted.") + LineBreak);
}

void CopyTo(Run& run, const CopySource& source, const std::string& destination, bool clearsOldVersions) {
  RequireUsableTarget(source, destination);
  if (clearsOldVersions) ClearOldVersions(run, source, destination);
  run.fso.CreateFolder(destination);
  MarkUnfinished(run, destination);
  SetPermissions(run, destination);  // what is copied takes them over
  CopyFiles(run, source, destination);
  for (const std::string& name : source.subFolders) {
    run.fso.CopyFolderOver(Joined(source.folder, name), Joined(destination, name));
  }
  SetPermissions(run, destination);
  run.fso.DeleteFileForced(Joined(destination, UnfinishedMark));
}

void TellFailure(Run& run, const Error& failure, const std::string& destination) {
  run.log.Log(Source, failure.number(), failure.text(), true, EntryType::Error);
  run.log.Log("DoCopyOp", CopyFailedError, "Failed to copy component to " + destination, true, EntryType::Error);
  SetProductResult(run, false, "Copying to " + destination + " failed");
}

void TellNothingToCopy(Run& run, const CopySource& source) {
  run.log.Log("DoCopyOp", 0, "Destination array has no data");
  run.log.Log("DoCopyOp", 0,
              "Nothing was copied for component " + run.component.name + ": " +
                  (source.files.empty() ? "its folder " + source.folder + " holds no file of its own. Put one there."
                                        : "it has no target. Give it a CopyOpTarget, or the product CopyOpRoot and "
                                          "CopyOpHold."),
              false, EntryType::Warning);
}

}  // namespace

bool DoCopyOp(Run& run, const CopyTargets& targets) {
  std::string destination = targets.first();
  try {
    const CopySource source = LookAtSource(run);
    // A folder without files of its own is not copied: whoever delivers only sub-folders puts a file beside them.
    if (targets.first().size() < 2 || source.files.empty()) {
      TellNothingToCopy(run, source);
      return true;
    }
    const std::string path = ComponentValue(run, Value::Path);
    for (const std::string& target : targets.folders) {
      destination = CopyDestination(run, target, targets.appendPath);
      const bool isForComponent = targets.appendPath || ContainsIgnoringCase(destination, path);
      // The root that a component without a path is copied to may stand among the versions of something else.
      CopyTo(run, source, destination, isForComponent && !path.empty());
    }
    return true;
  } catch (const Error& failure) {
    TellFailure(run, failure, destination);
    return false;
  }
}

void DeleteCopy(Run& run, const std::string& folder) {
  platform::Attributes attributes;
  run.machine.files().attributes(folder, attributes);
  try {
    if (!attributes.link) MarkUnfinished(run, folder);
  } catch (const Error&) {
    // A full disk takes the empty file, which is enough. Where that is refused, so is the deletion.
  }
  run.fso.DeleteFolderForced(folder, UnfinishedMark);
}

bool HoldsUnfinishedCopy(Run& run, const std::string& folder) {
  return run.fso.FileExists(Joined(folder, UnfinishedMark));
}
