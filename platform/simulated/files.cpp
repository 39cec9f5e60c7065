#include "platform/simulated/files.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include "platform/simulated/host.h"
#include "platform/simulated/text.h"

namespace simulated {

using platform::Attributes;
using platform::FileHandle;
using platform::FolderEntry;
using platform::Status;

namespace {

constexpr unsigned WritableMode = S_IWUSR;
constexpr unsigned ArchiveMode = S_IXUSR;
constexpr unsigned SystemMode = S_IXGRP;
constexpr unsigned HiddenMode = S_IXOTH;
constexpr unsigned FolderMode = S_IRWXU | S_IRGRP | S_IXGRP | S_IROTH | S_IXOTH;
constexpr unsigned ReadOnlyFolderMode = S_ISVTX;
constexpr unsigned SystemFolderMode = S_ISGID;
constexpr unsigned HiddenFolderMode = S_ISUID;

/// How effects tell attributes: by the system's bits.
unsigned ShownNumber(const Attributes& attributes) {
  return (attributes.readOnly ? 0x01U : 0U) | (attributes.hidden ? 0x02U : 0U) | (attributes.system ? 0x04U : 0U) |
         (attributes.folder ? 0x10U : 0U) | (attributes.archive ? 0x20U : 0U) | (attributes.link ? 0x400U : 0U);
}

}  // namespace

Files::~Files() {
  closeAll();
}

std::vector<platform::Drive> Files::drives() {
  std::vector<platform::Drive> all;
  for (const auto& [letter, drive] : drives_) all.push_back({letter, drive.type});
  return all;
}

Status Files::volumeLabel(char letter, std::string& label) {
  label.clear();
  const Drive* found = drive(letter);
  if (found == nullptr) return Status::PathNotFound;
  if (!found->ready) return Status::NotReady;
  label = found->label;
  return Status::Ok;
}

Status Files::freeSpace(char letter, std::uint64_t& bytes) {
  bytes = 0;
  const Drive* found = drive(letter);
  if (found == nullptr) return Status::PathNotFound;
  if (!found->ready) return Status::NotReady;
  bytes = found->writable ? found->free : 0;
  return Status::Ok;
}

Attributes Files::attributesOf(const Place& place) {
  Attributes found;
  found.readOnly = !place.drive->writable;
  found.folder = place.folder;
  found.link = place.link;
  if (!place.drive->writable) return found;
  if (place.link) return found;
  if (place.folder) {
    found.readOnly = (place.mode & ReadOnlyFolderMode) != 0;
    found.system = (place.mode & SystemFolderMode) != 0;
    found.hidden = (place.mode & HiddenFolderMode) != 0;
    return found;
  }
  found.readOnly = (place.mode & WritableMode) == 0;
  found.archive = (place.mode & ArchiveMode) != 0;
  found.system = (place.mode & SystemMode) != 0;
  found.hidden = (place.mode & HiddenMode) != 0;
  return found;
}

void Files::mark(const std::string& host, const Attributes& attributes) {
  unsigned mode = attributes.folder ? FolderMode : S_IRUSR | S_IRGRP | S_IROTH;
  if (attributes.folder && attributes.readOnly) mode |= ReadOnlyFolderMode;
  if (!attributes.folder && !attributes.readOnly) mode |= WritableMode;
  if (!attributes.folder && attributes.archive) mode |= ArchiveMode;
  if (attributes.system) mode |= attributes.folder ? SystemFolderMode : SystemMode;
  if (attributes.hidden) mode |= attributes.folder ? HiddenFolderMode : HiddenMode;
  if (chmod(host.c_str(), mode) != 0) Refuse(host + ": the host refuses its attributes");
}

Status Files::attributes(const std::string& path, Attributes& attributes) {
  const Place place = locate(path);
  if (place.status == Status::Ok) attributes = attributesOf(place);
  return place.status;
}

Status Files::setAttributes(const std::string& path, const Attributes& attributes) {
  const Place place = locate(path);
  if (place.status != Status::Ok) return place.status;
  if (!place.drive->writable) return Status::AccessDenied;
  Attributes marked = attributes;
  marked.folder = place.folder;
  if (!place.link) mark(place.host, marked);
  journal_.record("file attributes " + fullPath(path) + " = " + std::to_string(ShownNumber(attributes)));
  return Status::Ok;
}

Status Files::list(const std::string& folder, std::vector<FolderEntry>& entries) {
  entries.clear();
  const Place place = locate(folder);
  if (place.status == Status::FileNotFound || (place.status == Status::Ok && !place.folder))
    return Status::PathNotFound;
  if (place.status != Status::Ok) return place.status;
  const std::unique_ptr<DIR, int (*)(DIR*)> names(opendir(place.host.c_str()), closedir);
  if (!names) return Status::AccessDenied;
  while (const dirent* entry = readdir(names.get())) {
    const std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    Place item;
    item.drive = place.drive;
    item.host = place.host + "/" + name;
    fillIn(item);
    entries.push_back({name, attributesOf(item), item.size});
  }
  std::sort(entries.begin(), entries.end(),
            [this](const FolderEntry& a, const FolderEntry& b) { return CompareText(a.name, b.name, japanese_) < 0; });
  return Status::Ok;
}

Status Files::read(const std::string& path, std::string& bytes) {
  bytes.clear();
  const Place place = locate(path);
  if (place.status != Status::Ok) return place.status;
  if (place.folder) return Status::AccessDenied;
  for (auto& [handle, file] : open_)
    if (file.host == place.host) std::fflush(file.stream);
  bytes = ReadHostFile(place.host);
  return Status::Ok;
}

bool Files::isOpen(const std::string& host) const {
  return std::any_of(open_.begin(), open_.end(), [&](const auto& entry) { return entry.second.host == host; });
}

/// Whether a file may be written to, replaced or deleted; Ok also where it is not there yet.
Status Files::mayReplace(const Place& place) const {
  const bool refused = place.drive != nullptr && !mayChange(place);
  if (place.status == Status::FileNotFound)
    return place.drive->writable && !refused ? Status::Ok : Status::AccessDenied;
  if (place.status != Status::Ok) return place.status;
  if (place.folder || attributesOf(place).readOnly || refused) return Status::AccessDenied;
  return isOpen(place.host) ? Status::SharingViolation : Status::Ok;
}

Status Files::open(const std::string& path, bool append, FileHandle& file) {
  file = {};
  const Place place = locate(path);
  if (const Status s = mayReplace(place); s != Status::Ok) return s;
  const bool isNew = place.status == Status::FileNotFound;
  std::FILE* stream = std::fopen(place.host.c_str(), append ? "ab" : "wb");
  if (stream == nullptr) return Status::AccessDenied;
  if (!append) place.drive->free += place.size;
  file.value = nextHandle_++;
  open_[file.value] = {stream, place.drive, place.host, fullPath(path), append, 0};
  if (isNew) mark(place.host, {.archive = true});
  if (isNew || !append) journal_.record(std::string(isNew ? "file create " : "file empty ") + fullPath(path));
  return Status::Ok;
}

Status Files::openForAppending(const std::string& path, FileHandle& file) {
  return open(path, true, file);
}

Status Files::openForWriting(const std::string& path, FileHandle& file) {
  return open(path, false, file);
}

Status Files::write(FileHandle file, const std::string& bytes) {
  const auto found = open_.find(file.value);
  if (found == open_.end()) return Status::InvalidHandle;
  OpenFile& open = found->second;
  if (bytes.size() > open.drive->free) return Status::DiskFull;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), open.stream) == bytes.size();
  if (std::fflush(open.stream) != 0 || !written) return Status::DiskFull;
  open.drive->free -= bytes.size();
  open.written += bytes.size();
  return Status::Ok;
}

void Files::finish(OpenFile& file) {
  std::fclose(file.stream);
  const std::string verb = file.append ? "file append " : "file write ";
  if (file.written > 0) journal_.record(verb + file.path + " (" + std::to_string(file.written) + " bytes)");
}

Status Files::close(FileHandle file) {
  const auto found = open_.find(file.value);
  if (found == open_.end()) return Status::InvalidHandle;
  finish(found->second);
  open_.erase(found);
  return Status::Ok;
}

void Files::closeAll() {
  for (auto& [handle, file] : open_) finish(file);
  open_.clear();
}

Status Files::copyFile(const std::string& from, const std::string& to) {
  const Place source = locate(from);
  if (source.status != Status::Ok) return source.status;
  if (source.folder) return Status::AccessDenied;
  const Place target = locate(to);
  if (const Status s = mayReplace(target); s != Status::Ok) return s;
  const Attributes replaced = target.status == Status::Ok ? attributesOf(target) : Attributes();
  if (replaced.hidden || replaced.system) return Status::AccessDenied;
  if (source.host == target.host) return Status::SharingViolation;
  if (source.size > target.drive->free + target.size) return Status::DiskFull;
  CopyHostFile(source.host, target.host);
  Attributes copied = attributesOf(source);
  copied.archive = true;
  mark(target.host, copied);
  target.drive->free = target.drive->free + target.size - source.size;
  journal_.record("file copy " + fullPath(from) + " -> " + fullPath(to));
  return Status::Ok;
}

Status Files::moveFile(const std::string& from, const std::string& to) {
  const Place source = locate(from);
  if (source.status != Status::Ok) return source.status;
  const Place target = locate(to);
  if (const Status s = mayReplace(target); s != Status::Ok) return s;
  if (source.folder) return Status::AccessDenied;
  if (isOpen(source.host)) return Status::SharingViolation;
  if (source.host == target.host) return Status::Ok;
  if (!source.drive->writable) return Status::AccessDenied;
  const Attributes moved = attributesOf(source);
  CopyHostFile(source.host, target.host);
  mark(target.host, moved);
  unlink(source.host.c_str());
  lists_.forget(source.path);
  target.drive->free += target.size;
  journal_.record("file move " + fullPath(from) + " -> " + fullPath(to));
  return Status::Ok;
}

Status Files::deleteFile(const std::string& path) {
  const Place place = locate(path);
  if (place.status != Status::Ok) return place.status;
  if (const Status s = mayReplace(place); s != Status::Ok) return s;
  unlink(place.host.c_str());
  lists_.forget(place.path);
  place.drive->free += place.size;
  journal_.record("file delete " + fullPath(path));
  return Status::Ok;
}

Status Files::createFolder(const std::string& path) {
  const Place place = locate(path);
  if (place.status == Status::Ok) return Status::AlreadyExists;
  if (place.status != Status::FileNotFound) return place.status;
  if (!place.drive->writable || !mayChange(place) || mkdir(place.host.c_str(), 0777) != 0) return Status::AccessDenied;
  makeOwn(place);
  journal_.record("folder create " + fullPath(path));
  return Status::Ok;
}

Status Files::deleteFolder(const std::string& path) {
  const Place place = locate(path);
  if (place.status != Status::Ok) return place.status;
  if (!place.folder) return Status::FolderNameInvalid;
  if (attributesOf(place).readOnly || place.host == place.drive->folder || !mayChange(place))
    return Status::AccessDenied;
  const int deleted = place.link ? unlink(place.host.c_str()) : rmdir(place.host.c_str());
  if (deleted != 0) return Status::FolderNotEmpty;
  lists_.forget(place.path);
  journal_.record("folder delete " + fullPath(path));
  return Status::Ok;
}

}  // namespace simulated
