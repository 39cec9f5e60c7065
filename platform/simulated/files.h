// Simulated drives and files. Every drive is a host folder; Windows paths map to it without regard to letter case.
// Attributes live in the mode bits of the host files: no write bit of the owner is read-only, the execute bits of
// owner, group and others are archive, system and hidden. Of a folder, which needs those bits, the sticky bit and those
// of the set group and user are read-only, system and hidden. On a drive that cannot be written everything is
// read-only.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/simulated/access.h"
#include "platform/simulated/journal.h"

namespace simulated {

struct Drive {
  char letter = 'C';
  platform::DriveType type = platform::DriveType::Fixed;
  std::string label = {};
  std::string folder = {};  ///< host folder with the volume's content
  bool ready = true;        ///< false: no disc in the drive
  bool writable = true;
  std::uint64_t free = 2000000000;       ///< bytes; files written and deleted change it
  std::optional<bool> accessLists = {};  ///< whether the volume keeps them; fixed drives do
  bool administrator = true;             ///< whether the program's user is one there
};

class Files : public platform::Files {
 public:
  explicit Files(Journal& journal) : journal_(journal) {}
  ~Files() override;
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  std::vector<platform::Drive> drives() override;
  platform::Status volumeLabel(char letter, std::string& label) override;
  platform::Status freeSpace(char letter, std::uint64_t& bytes) override;
  /// Full form of a path: drive, no doubled separators, no "." and "..".
  std::string fullPath(const std::string& path) override { return full(path); }
  platform::Status attributes(const std::string& path, platform::Attributes& attributes) override;
  platform::Status setAttributes(const std::string& path, const platform::Attributes& attributes) override;
  platform::Status list(const std::string& folder, std::vector<platform::FolderEntry>& entries) override;
  platform::Status read(const std::string& path, std::string& bytes) override;
  platform::Status numberOfNames(const std::string& path, std::uint32_t& names) override;
  platform::Status ordinaryUsersMayWrite(const std::string& path, bool& mayWrite) override;
  platform::Status openForAppending(const std::string& path, platform::FileHandle& file) override;
  platform::Status openForWriting(const std::string& path, platform::FileHandle& file) override;
  platform::Status write(platform::FileHandle file, const std::string& bytes) override;
  platform::Status close(platform::FileHandle file) override;
  platform::Status copyFile(const std::string& from, const std::string& to) override;
  platform::Status moveFile(const std::string& from, const std::string& to) override;
  platform::Status deleteFile(const std::string& path) override;
  platform::Status createFolder(const std::string& path) override;
  platform::Status deleteFolder(const std::string& path) override;
  platform::Status setOwner(const std::string& path, platform::Account owner) override;
  platform::Status setAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) override;
  platform::Status addAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) override;

  /// Adds or replaces the drive of that letter. The host folder must be there, unless the drive is not ready.
  void setDrive(Drive drive);
  void removeDrive(char letter);
  const std::map<char, Drive>& allDrives() const { return drives_; }
  /// Changes the disc: another content under another label.
  void insertDisc(char letter, const std::string& hostFolder, const std::string& label);
  void ejectDisc(char letter);
  void setFree(char letter, std::uint64_t bytes);

  /// Where relative paths start. Its drive becomes the current one.
  void setCurrentFolder(const std::string& folder);
  /// Where paths like "D:file" start, and what "D:" means: the drive's own current folder, at first its root.
  void setDriveFolder(const std::string& folder);
  /// Whether names are in the Japanese code page.
  void setJapanese(bool japanese) {
    japanese_ = japanese;
    lists_.setJapanese(japanese);
    folders_.clear();
  }
  /// Whether volumes and the system know access control.
  void setAccessControl(bool known) { accessControl_ = known; }

  // What simulated programs and set-ups use: no attribute and no access list hinders them.

  /// Writes a file with its folders, also on a drive that programs cannot write.
  void put(const std::string& path, const std::string& bytes);
  void makeFolder(const std::string& path);
  /// The file's bytes, or nothing when it is not there.
  std::optional<std::string> content(const std::string& path);
  bool exists(const std::string& path);
  bool isFolder(const std::string& path);
  void remove(const std::string& path);
  const AccessList& accessList(const std::string& path) { return lists_.of(fullPath(path)); }
  /// For the path and whatever below it has no list of its own.
  void setAccessList(const std::string& path, AccessList list) { lists_.set(fullPath(path), std::move(list)); }
  const AccessLists& accessLists() const { return lists_; }

  /// Closes every open file, as the end of the program does.
  void closeAll();

 private:
  /// What a path stands for. Status: Ok it is there, FileNotFound only its last name is missing, or another failure.
  struct Place {
    platform::Status status = platform::Status::PathNotFound;
    Drive* drive = nullptr;
    std::string path;  ///< in full
    std::string host;
    bool folder = false;
    bool link = false;        ///< what stands for another folder or file: a link of the host
    std::uint32_t names = 1;  ///< of the file
    unsigned mode = 0;
    std::uint64_t size = 0;
  };
  struct OpenFile {
    std::FILE* stream = nullptr;
    Drive* drive = nullptr;
    std::string host;
    std::string path;
    bool append = false;
    std::uint64_t written = 0;
  };

  Drive* drive(char letter);
  std::string full(const std::string& path) const;
  std::string driveFolder(char letter) const;
  std::vector<std::string> namesOf(const std::string& path) const;
  std::size_t lastSeparator(const std::string& path) const;
  Place locate(const std::string& path);
  std::string hostFolder(const Drive& drive, const std::string& full);
  static void fillIn(Place& place);
  static platform::Attributes attributesOf(const Place& place);
  bool isOpen(const std::string& host) const;
  bool keepsLists(const Drive& drive) const;
  bool mayChange(const Place& place) const;
  void makeOwn(const Place& place);
  void changeList(const std::string& full, AccessList list);
  platform::Status mayReplace(const Place& place) const;
  platform::Status open(const std::string& path, bool append, platform::FileHandle& file);
  void finish(OpenFile& file);
  static void mark(const std::string& host, const platform::Attributes& attributes);

  Journal& journal_;
  std::map<char, Drive> drives_;
  std::map<std::string, std::string> folders_;  ///< host folders of lower-case full paths
  std::map<std::uintptr_t, OpenFile> open_;
  std::uintptr_t nextHandle_ = 1;
  char currentDrive_ = 'C';
  std::map<char, std::string> driveFolders_;  ///< current folders without the drive; "" for those not set
  bool japanese_ = false;
  bool accessControl_ = true;
  AccessLists lists_;
};

}  // namespace simulated
