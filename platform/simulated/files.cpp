#include "platform/simulated/files.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include "platform/simulated/host.h"
#include "platform/simulated/text.h"

namespace simulated {

using platform::FileHandle;
using platform::FolderEntry;
using platform::Status;
namespace status = platform::status;
namespace attribute = platform::attribute;

namespace {

constexpr unsigned WritableMode = S_IWUSR;
constexpr unsigned ArchiveMode = S_IXUSR;
constexpr unsigned SystemMode = S_IXGRP;
constexpr unsigned HiddenMode = S_IXOTH;

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
  if (found == nullptr) return status::PathNotFound;
  if (!found->ready) return status::NotReady;
  label = found->label;
  return status::Ok;
}

Status Files::freeSpace(char letter, std::uint64_t& bytes) {
  bytes = 0;
  const Drive* found = drive(letter);
  if (found == nullptr) return status::PathNotFound;
  if (!found->ready) return status::NotReady;
  bytes = found->writable ? found->free : 0;
  return status::Ok;
}

std::uint32_t Files::attributesOf(const Place& place) {
  std::uint32_t bits = place.drive->writable ? attribute::Normal : attribute::ReadOnly;
  if (place.folder) return bits | attribute::Folder | (place.link ? attribute::Link : 0);
  if (!place.drive->writable) return bits;
  if ((place.mode & WritableMode) == 0) bits |= attribute::ReadOnly;
  if ((place.mode & ArchiveMode) != 0) bits |= attribute::Archive;
  if ((place.mode & SystemMode) != 0) bits |= attribute::System;
  if ((place.mode & HiddenMode) != 0) bits |= attribute::Hidden;
  return bits;
}

void Files::mark(const std::string& host, std::uint32_t attributes) {
  unsigned mode = S_IRUSR | S_IRGRP | S_IROTH;
  if ((attributes & attribute::ReadOnly) == 0) mode |= WritableMode;
  if ((attributes & attribute::Archive) != 0) mode |= ArchiveMode;
  if ((attributes & attribute::System) != 0) mode |= SystemMode;
  if ((attributes & attribute::Hidden) != 0) mode |= HiddenMode;
  if (chmod(host.c_str(), mode) != 0) Refuse(host + ": the host refuses its attributes");
}

Status Files::attributes(const std::string& path, std::uint32_t& attributes) {
  const Place place = locate(path);
  attributes = place.status == status::Ok ? attributesOf(place) : attribute::Normal;
  return place.status;
}

Status Files::setAttributes(const std::string& path, std::uint32_t attributes) {
  const Place place = locate(path);
  if (place.status != status::Ok) return place.status;
  if (!place.drive->writable) return status::AccessDenied;
  if (!place.folder) mark(place.host, attributes);
  journal_.record("file attributes " + fullPath(path) + " = " + std::to_string(attributes));
  return status::Ok;
}

Status Files::list(const std::string& folder, std::vector<FolderEntry>& entries) {
  entries.clear();
  const Place place = locate(folder);
  if (place.status == status::FileNotFound || (place.status == status::Ok && !place.folder))
    return status::PathNotFound;
  if (place.status != status::Ok) return place.status;
  const std::unique_ptr<DIR, int (*)(DIR*)> names(opendir(place.host.c_str()), closedir);
  if (!names) return status::AccessDenied;
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
            [](const FolderEntry& a, const FolderEntry& b) { return CompareText(a.name, b.name) < 0; });
  return status::Ok;
}

Status Files::read(const std::string& path, std::string& bytes) {
  bytes.clear();
  const Place place = locate(path);
  if (place.status != status::Ok) return place.status;
  if (place.folder) return status::AccessDenied;
  for (auto& [handle, file] : open_)
    if (file.host == place.host) std::fflush(file.stream);
  bytes = ReadHostFile(place.host);
  return status::Ok;
}

bool Files::isOpen(const std::string& host) const {
  return std::any_of(open_.begin(), open_.end(), [&](const auto& entry) { return entry.second.host == host; });
}

/// Whether a file may be written to, replaced or deleted; Ok also where it is not there yet.
Status Files::mayReplace(const Place& place) const {
  if (place.status == status::FileNotFound) return place.drive->writable ? status::Ok : status::AccessDenied;
  if (place.status != status::Ok) return place.status;
  if ((attributesOf(place) & (attribute::ReadOnly | attribute::Folder)) != 0) return status::AccessDenied;
  return isOpen(place.host) ? status::SharingViolation : status::Ok;
}

Status Files::open(const std::string& path, bool append, FileHandle& file) {
  file = {};
  const Place place = locate(path);
  if (const Status s = mayReplace(place); s != status::Ok) return s;
  const bool isNew = place.status == status::FileNotFound;
  std::FILE* stream = std::fopen(place.host.c_str(), append ? "ab" : "wb");
  if (stream == nullptr) return status::AccessDenied;
  if (!append) place.drive->free += place.size;
  file.value = nextHandle_++;
  open_[file.value] = {stream, place.drive, place.host, fullPath(path), append, 0};
  if (isNew) mark(place.host, attribute::Archive);
  if (isNew || !append) journal_.record(std::string(isNew ? "file create " : "file empty ") + fullPath(path));
  return status::Ok;
}

Status Files::openForAppending(const std::string& path, FileHandle& file) {
  return open(path, true, file);
}

Status Files::openForWriting(const std::string& path, FileHandle& file) {
  return open(path, false, file);
}

Status Files::write(FileHandle file, const std::string& bytes) {
  const auto found = open_.find(file.value);
  if (found == open_.end()) return status::InvalidHandle;
  OpenFile& open = found->second;
  if (bytes.size() > open.drive->free) return status::DiskFull;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), open.stream) == bytes.size();
  if (std::fflush(open.stream) != 0 || !written) return status::DiskFull;
  open.drive->free -= bytes.size();
  open.written += bytes.size();
  return status::Ok;
}

void Files::finish(OpenFile& file) {
  std::fclose(file.stream);
  const std::string verb = file.append ? "file append " : "file write ";
  if (file.written > 0) journal_.record(verb + file.path + " (" + std::to_string(file.written) + " bytes)");
}

Status Files::close(FileHandle file) {
  const auto found = open_.find(file.value);
  if (found == open_.end()) return status::InvalidHandle;
  finish(found->second);
  open_.erase(found);
  return status::Ok;
}

void Files::closeAll() {
  for (auto& [handle, file] : open_) finish(file);
  open_.clear();
}

Status Files::copyFile(const std::string& from, const std::string& to) {
  const Place source = locate(from);
  if (source.status != status::Ok) return source.status;
  if (source.folder) return status::AccessDenied;
  const Place target = locate(to);
  if (const Status s = mayReplace(target); s != status::Ok) return s;
  if (source.host == target.host) return status::SharingViolation;
  if (source.size > target.drive->free + target.size) return status::DiskFull;
  WriteHostFile(target.host, ReadHostFile(source.host));
  mark(target.host, attributesOf(source) | attribute::Archive);
  target.drive->free = target.drive->free + target.size - source.size;
  journal_.record("file copy " + fullPath(from) + " -> " + fullPath(to));
  return status::Ok;
}

Status Files::deleteFile(const std::string& path) {
  const Place place = locate(path);
  if (place.status != status::Ok) return place.status;
  if (const Status s = mayReplace(place); s != status::Ok) return s;
  unlink(place.host.c_str());
  place.drive->free += place.size;
  journal_.record("file delete " + fullPath(path));
  return status::Ok;
}

Status Files::createFolder(const std::string& path) {
  const Place place = locate(path);
  if (place.status == status::Ok) return status::AlreadyExists;
  if (place.status != status::FileNotFound) return place.status;
  if (!place.drive->writable || mkdir(place.host.c_str(), 0777) != 0) return status::AccessDenied;
  journal_.record("folder create " + fullPath(path));
  return status::Ok;
}

Status Files::deleteFolder(const std::string& path) {
  const Place place = locate(path);
  if (place.status != status::Ok) return place.status;
  if (!place.folder) return status::FolderNameInvalid;
  if (!place.drive->writable || place.host == place.drive->folder) return status::AccessDenied;
  const int deleted = place.link ? unlink(place.host.c_str()) : rmdir(place.host.c_str());
  if (deleted != 0) return status::FolderNotEmpty;
  journal_.record("folder delete " + fullPath(path));
  return status::Ok;
}

Status Files::setAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) {
  static constexpr const char* Accounts[] = {"Administrators", "LocalSystem", "Users"};
  const Place place = locate(path);
  if (place.status != status::Ok) return place.status;
  if (!accessControl_ || place.drive->type != platform::DriveType::Fixed) return status::CallNotImplemented;
  std::string line = "access " + fullPath(path) + ":";
  for (const platform::AccessGrant& grant : grants)
    line += std::string(" ") + Accounts[static_cast<int>(grant.account)] +
            (grant.right == platform::AccessRight::Full ? "=full" : "=read");
  journal_.record(line);
  return status::Ok;
}

}  // namespace simulated
