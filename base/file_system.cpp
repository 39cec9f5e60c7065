#include "base/file_system.h"

#include <algorithm>

#include "base/error_texts.h"
#include "base/operating_systems.h"
#include "base/paths.h"
#include "base/text.h"
#include "platform/owned.h"

namespace assistant {
namespace {

void Require(platform::Status status, const std::string& path, const char* source) {
  if (status == platform::Status::Ok) return;
  throw Error(platform::Number(status), modErrorBase::SystemErrorText(status) + ": " + path, source);
}

}  // namespace

bool clsFso::fileExists(const std::string& path) {
  platform::Attributes attributes;
  return machine_.files().attributes(AsAsked(path), attributes) == platform::Status::Ok && !attributes.folder;
}

bool clsFso::folderExists(const std::string& path) {
  platform::Attributes attributes;
  return machine_.files().attributes(AsAsked(path), attributes) == platform::Status::Ok && attributes.folder;
}

bool clsFso::fileIsGone(const std::string& path) {
  platform::Attributes attributes;
  const platform::Status asked = machine_.files().attributes(AsAsked(path), attributes);
  return asked == platform::Status::Ok ? attributes.folder : platform::IsNotThere(asked);
}

bool clsFso::folderIsGone(const std::string& path) {
  platform::Attributes attributes;
  const platform::Status asked = machine_.files().attributes(AsAsked(path), attributes);
  return asked == platform::Status::Ok ? !attributes.folder : platform::IsNotThere(asked);
}

bool clsFso::driveExists(char letter) {
  const std::string wanted = UpperCase(std::string(1, letter));
  const auto drives = machine_.files().drives();
  return std::any_of(drives.begin(), drives.end(),
                     [&](const platform::Drive& drive) { return drive.letter == wanted.front(); });
}

std::string clsFso::inFull(const std::string& path) {
  return StartsAtDriveFolder(path) ? machine_.files().fullPath(path) : path;
}

void clsFso::createFolder(const std::string& path) {
  const std::string folder = Normalised(path);
  if (folder.size() > LongestPath) throw modErrorBase::MakeError(6021, {folder}, "clsFso.CreateFolder");
  if (folder.empty() || folderExists(folder)) return;
  if (folder.size() == 2 && folder[1] == ':') {
    throw modErrorBase::MakeError(6020, {folder}, "clsFso.CreateFolder");
  }
  createFolder(FolderPart(folder));
  const platform::Status created = machine_.files().createFolder(folder);
  if (created != platform::Status::Ok && !folderExists(folder)) {
    throw modErrorBase::MakeError(6021, {folder}, "clsFso.CreateFolder");
  }
}

std::vector<std::string> clsFso::listFiles(const std::string& folder) {
  return list(folder, false);
}

std::vector<std::string> clsFso::listFolders(const std::string& folder) {
  return list(folder, true);
}

std::vector<std::string> clsFso::list(const std::string& folder, bool folders) {
  std::vector<platform::FolderEntry> entries;
  const platform::Status listed = machine_.files().list(AsAsked(folder), entries);
  if (!platform::IsNotThere(listed)) Require(listed, folder, "clsFso.List");
  std::vector<std::string> names;
  for (const platform::FolderEntry& entry : entries) {
    if (entry.isFolder() == folders) names.push_back(entry.name);
  }
  return names;
}

void clsFso::deleteFileForced(const std::string& path) {
  platform::Attributes attributes;
  Require(machine_.files().attributes(path, attributes), path, "clsFso.DeleteFile");
  if (attributes.readOnly) machine_.files().setAttributes(path, {});
  Require(machine_.files().deleteFile(path), path, "clsFso.DeleteFile");
}

void clsFso::copyFile(const std::string& from, const std::string& to) {
  Require(machine_.files().copyFile(from, to), from + " to " + to, "clsFso.CopyFile");
  machine_.mainWindow().pumpMessages();  // a folder of many files must not make the window look dead
}

void clsFso::moveFileOver(const std::string& from, const std::string& to) {
  platform::Attributes attributes;
  const bool replaces = machine_.files().attributes(to, attributes) == platform::Status::Ok;
  if (replaces && attributes.readOnly) machine_.files().setAttributes(to, {});
  Require(machine_.files().moveFile(from, to), from + " to " + to, "clsFso.MoveFile");
}

void clsFso::copyFileAnew(const std::string& from, const std::string& to) {
  if (fileExists(to)) deleteFileForced(to);
  copyFile(from, to);
  // Nothing stays read-only that came from a CD.
  Require(machine_.files().setAttributes(to, {}), to, "clsFso.CopyFile");
}

bool clsFso::isLink(const std::string& path) {
  platform::Attributes attributes;
  return machine_.files().attributes(AsAsked(path), attributes) == platform::Status::Ok && attributes.link;
}

bool clsFso::hasOtherNames(const std::string& path) {
  std::uint32_t names = 0;
  // Some file systems count none.
  return machine_.files().numberOfNames(path, names) != platform::Status::Ok || names > 1;
}

void clsFso::copyFolderOver(const std::string& from, const std::string& to,
                            const std::function<void(const CopiedFolder&)>& entered) {
  if (isLink(to)) {
    throw Error(GeneralError, to + " is a link to another folder, which is not followed. Delete the link.",
                "clsFso.CopyFolder");
  }
  const bool made = !folderExists(to);
  createFolder(to);
  entered({from, to, made});
  // A folder that is not there any more is a disc that was pulled out, not an empty folder.
  std::vector<platform::FolderEntry> entries;
  Require(machine_.files().list(AsAsked(from), entries), from, "clsFso.CopyFolder");
  for (const platform::FolderEntry& entry : entries) {
    const std::string source = Joined(from, entry.name);
    const std::string target = Joined(to, entry.name);
    entry.isFolder() ? copyFolderOver(source, target, entered) : copyFileAnew(source, target);
  }
}

void clsFso::deleteFolderForced(const std::string& path, const std::string& lastFile) {
  platform::Attributes attributes;
  Require(machine_.files().attributes(path, attributes), path, "clsFso.DeleteFolder");
  if (!attributes.link) {
    for (const std::string& file : listFiles(path)) {
      if (!EqualIgnoringCase(file, lastFile)) deleteFileForced(Joined(path, file));
    }
    for (const std::string& folder : listFolders(path)) deleteFolderForced(Joined(path, folder));
    for (const std::string& file : listFiles(path)) deleteFileForced(Joined(path, file));
  }
  if (attributes.readOnly) machine_.files().setAttributes(path, {});
  Require(machine_.files().deleteFolder(path), path, "clsFso.DeleteFolder");
}

void clsFso::writeNewFile(const std::string& path, const std::string& bytes) {
  platform::OwnedFile file(machine_.files());
  Require(machine_.files().openForWriting(path, file.receive()), path, "clsFso.WriteNewFile");
  const platform::Status written = machine_.files().write(*file, bytes);
  const platform::Status closed = file.close();
  Require(written, path, "clsFso.WriteNewFile");
  Require(closed, path, "clsFso.WriteNewFile");
}

std::string clsFso::operatingSystem() {
  platform::SystemVersion version;
  if (machine_.machine().systemVersion(version) != platform::Status::Ok) return "0";
  return OperatingSystemName(version);
}

}  // namespace assistant
