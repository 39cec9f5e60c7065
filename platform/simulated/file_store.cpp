// Drives, and the way from Windows paths to host files.
#include <sys/stat.h>

#include <cctype>
#include <filesystem>

#include "platform/simulated/files.h"
#include "platform/simulated/host.h"
#include "platform/simulated/text.h"

namespace simulated {

using platform::Status;

namespace {

constexpr std::size_t LongestPath = 259;
constexpr Status InvalidName{123};

bool HasDrive(const std::string& path) {
  return path.size() >= 2 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0])) != 0;
}

}  // namespace

/// Names between the separators, with "." and ".." worked off.
std::vector<std::string> Files::namesOf(const std::string& path) const {
  std::vector<std::string> names;
  for (const std::string& name : Split(path, '\\', japanese_)) {
    if (name == "..") {
      if (!names.empty()) names.pop_back();
    } else if (!name.empty() && name != ".") {
      names.push_back(name);
    }
  }
  return names;
}

std::size_t Files::lastSeparator(const std::string& path) const {
  return WithoutTrailBytes(path, japanese_).rfind('\\');
}

void Files::setCurrentFolder(const std::string& folder) {
  setDriveFolder(folder);
  currentDrive_ = UpperLetter(folder[0]);
}

void Files::setDriveFolder(const std::string& folder) {
  if (!HasDrive(folder)) Refuse("current folder '" + folder + "': name its drive");
  driveFolders_[UpperLetter(folder[0])] = folder.substr(2);
}

std::string Files::driveFolder(char letter) const {
  const auto found = driveFolders_.find(UpperLetter(letter));
  return found == driveFolders_.end() ? "" : found->second;
}

Drive* Files::drive(char letter) {
  const auto found = drives_.find(UpperLetter(letter));
  return found == drives_.end() ? nullptr : &found->second;
}

void Files::setDrive(Drive drive) {
  drive.letter = UpperLetter(drive.letter);
  if (drive.letter < 'A' || drive.letter > 'Z') Refuse("drive '" + std::string(1, drive.letter) + "': name it A to Z");
  if (drive.ready && !IsHostFolder(drive.folder))
    Refuse("drive " + std::string(1, drive.letter) + ": the folder '" + drive.folder + "' is not there; create it");
  folders_.clear();
  drives_[drive.letter] = std::move(drive);
}

void Files::removeDrive(char letter) {
  drives_.erase(UpperLetter(letter));
}

void Files::insertDisc(char letter, const std::string& hostFolder, const std::string& label) {
  Drive* found = drive(letter);
  if (found == nullptr) Refuse("drive " + std::string(1, letter) + ": there is no such drive to insert a disc into");
  Drive changed = *found;
  changed.folder = hostFolder;
  changed.label = label;
  changed.ready = true;
  setDrive(changed);
  journal_.record("disc " + label + " inserted in " + std::string(1, changed.letter));
}

void Files::ejectDisc(char letter) {
  Drive* found = drive(letter);
  if (found == nullptr) Refuse("drive " + std::string(1, letter) + ": there is no such drive to eject a disc from");
  found->ready = false;
  journal_.record("disc ejected from " + std::string(1, found->letter));
}

void Files::setFree(char letter, std::uint64_t bytes) {
  Drive* found = drive(letter);
  if (found == nullptr) Refuse("drive " + std::string(1, letter) + ": there is no such drive to set free bytes of");
  found->free = bytes;
}

std::string Files::full(const std::string& path) const {
  std::string text(UpToZero(path));
  for (char& c : text)
    if (c == '/') c = '\\';
  if (text.rfind("\\\\", 0) == 0) return text;
  const bool hasDrive = HasDrive(text);
  std::string root = hasDrive ? text.substr(0, 2) : std::string(1, currentDrive_) + ":";
  if (hasDrive) text = text.substr(2);
  if (text.empty() || text[0] != '\\') text = driveFolder(root[0]) + "\\" + text;
  const std::vector<std::string> names = namesOf(text);
  for (const std::string& name : names) root += "\\" + name;
  return names.empty() ? root + "\\" : root;
}

void Files::fillIn(Place& place) {
  struct stat facts {};
  if (lstat(place.host.c_str(), &facts) != 0) return;
  place.status = Status::Ok;
  place.link = S_ISLNK(facts.st_mode);
  // One that leads nowhere is a folder's: the systems played here have no others.
  if (place.link && stat(place.host.c_str(), &facts) != 0) facts.st_mode = S_IFDIR;
  place.folder = S_ISDIR(facts.st_mode);
  place.names = place.folder ? 1 : static_cast<std::uint32_t>(facts.st_nlink);
  place.mode = facts.st_mode;
  place.size = place.folder ? 0 : static_cast<std::uint64_t>(facts.st_size);
}

Files::Place Files::locate(const std::string& path) {
  Place place;
  const std::string full = path.empty() ? path : this->full(path);
  place.path = full;
  if (!HasDrive(full) || full.size() > LongestPath) return place;
  place.drive = drive(full[0]);
  if (place.drive == nullptr) return place;
  if (!place.drive->ready) {
    place.status = Status::NotReady;
    return place;
  }
  if (WithoutTrailBytes(full, japanese_).find_first_of("<>\"|?*:", 2) != std::string::npos) {
    place.status = InvalidName;
    return place;
  }
  const std::size_t last = lastSeparator(full);
  const std::string name = full.substr(last + 1);
  const std::string folder = hostFolder(*place.drive, full.substr(0, last));
  if (folder.empty()) return place;
  place.host = name.empty() ? folder : folder + "/" + name;
  fillIn(place);
  if (place.status == Status::Ok) return place;
  const std::string found = FindHostEntry(folder, name, japanese_);
  place.status = Status::FileNotFound;
  if (found.empty()) return place;
  place.host = folder + "/" + found;
  fillIn(place);
  return place;
}

/// The host's folder for a full path to a folder, without trailing backslash; "" when there is no such folder. Most
/// paths of a run share few folders: those found once are remembered, and looked at again each time.
std::string Files::hostFolder(const Drive& drive, const std::string& full) {
  if (full.size() <= 2) return drive.folder;
  std::string& known = folders_[Lower(full, japanese_)];
  if (IsHostFolder(known)) return known;
  const std::size_t last = lastSeparator(full);
  const std::string parent = hostFolder(drive, full.substr(0, last));
  const std::string name = parent.empty() ? "" : FindHostEntry(parent, full.substr(last + 1), japanese_);
  known = name.empty() ? "" : parent + "/" + name;
  return IsHostFolder(known) ? known : "";
}

void Files::put(const std::string& path, const std::string& bytes) {
  const std::string full = fullPath(path);
  const std::size_t last = lastSeparator(full);
  makeFolder(last == 2 ? full.substr(0, 3) : full.substr(0, last));
  const Place place = locate(full);
  if (place.status != Status::Ok && place.status != Status::FileNotFound)
    Refuse("file '" + path + "' cannot be written: its drive is missing, not ready, or the name is not valid");
  if (place.folder) Refuse("'" + path + "' is a folder on the machine: name a file in it");
  WriteHostFile(place.host, bytes);
  if (place.status == Status::FileNotFound) mark(place.host, {.archive = true});
  place.drive->free -= std::min(place.drive->free, bytes.size() - std::min<std::uint64_t>(place.size, bytes.size()));
  journal_.record("file put " + full);
}

void Files::makeFolder(const std::string& path) {
  const std::string full = fullPath(path);
  if (!HasDrive(full) || drive(full[0]) == nullptr || !drive(full[0])->ready)
    Refuse("folder '" + path + "' cannot be created: its drive is missing or not ready");
  std::string host = drive(full[0])->folder;
  for (const std::string& name : namesOf(full.substr(2))) {
    const std::string found = FindHostEntry(host, name, japanese_);
    host += "/" + (found.empty() ? name : found);
  }
  MakeHostFolder(host);
}

std::optional<std::string> Files::content(const std::string& path) {
  std::string bytes;
  if (read(path, bytes) != Status::Ok) return std::nullopt;
  return bytes;
}

bool Files::exists(const std::string& path) {
  return locate(path).status == Status::Ok;
}

bool Files::isFolder(const std::string& path) {
  const Place place = locate(path);
  return place.status == Status::Ok && place.folder;
}

void Files::remove(const std::string& path) {
  const Place place = locate(path);
  if (place.status != Status::Ok) return;
  std::filesystem::remove_all(place.host);
  lists_.forget(place.path);
  place.drive->free += place.size;
  journal_.record("file removed " + fullPath(path));
}

}  // namespace simulated
