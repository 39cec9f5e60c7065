// Port: drives, files and folders (source: the ANSI file functions of kernel32; access control of advapi32).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/status.h"

namespace platform {

/// Kinds of drive, numbered as the scripting file-system object numbers them.
enum class DriveType { Unknown = 0, Removable = 1, Fixed = 2, Remote = 3, CdRom = 4, RamDisk = 5 };

struct Drive {
  char letter = '?';  ///< upper case
  DriveType type = DriveType::Unknown;
};

/// Attributes of a file or folder; none of them is a normal file.
struct Attributes {
  bool readOnly = false;
  bool hidden = false;
  bool system = false;
  bool archive = false;
  bool folder = false;
  bool link = false;  ///< what stands for another folder or file (a reparse point)

  bool operator==(const Attributes&) const = default;
};

/// One entry of a folder; "." and ".." are never listed.
struct FolderEntry {
  std::string name;
  Attributes attributes;
  std::uint64_t size = 0;  ///< bytes; 0 for a folder

  bool isFolder() const { return attributes.folder; }
};

/// An open file; 0 is none.
struct FileHandle {
  std::uintptr_t value = 0;

  bool operator==(const FileHandle&) const = default;
};

/// Accounts that every machine knows, whatever its language calls them.
enum class Account { Administrators, LocalSystem, Users };
enum class AccessRight { Full, ReadAndExecute };

struct AccessGrant {
  Account account;
  AccessRight right;
};

/// Paths are Windows paths in the machine's ANSI code page; a relative one starts at the current folder. Names ignore
/// letter case. Every method that returns a status tells "not there" (FileNotFound, PathNotFound: see IsNotThere) from
/// failures; DiskFull, AccessDenied (read-only file or medium), NotReady (no disc), SharingViolation are the others
/// met.
class FileReader {
 public:
  virtual ~FileReader() = default;

  /// All drives in the order of their letters.
  virtual std::vector<Drive> drives() = 0;
  /// The label of the volume in the drive; NotReady or PathNotFound when there is none.
  virtual Status volumeLabel(char letter, std::string& label) = 0;
  /// Bytes that the caller may still write to the drive; 0 after a failure.
  virtual Status freeSpace(char letter, std::uint64_t& bytes) = 0;

  /// The full form of a path: a relative one starts at the current folder, one like "D:file" at the current folder of
  /// that drive. What cannot be made full stays as it is.
  virtual std::string fullPath(const std::string& path) = 0;

  /// Leaves `attributes` as they were after a failure.
  virtual Status attributes(const std::string& path, Attributes& attributes) = 0;
  /// The entries of a folder, sorted by name without regard to letter case. None after a failure at its start; those
  /// that were read when the folder broke off.
  virtual Status list(const std::string& folder, std::vector<FolderEntry>& entries) = 0;
  /// The whole content of a file; empty after a failure.
  virtual Status read(const std::string& path, std::string& bytes) = 0;
  /// How many names (hard links) lead to the file; 0 after a failure.
  virtual Status numberOfNames(const std::string& path, std::uint32_t& names) = 0;

  /// Whether anybody but administrators, the system and the user of this program may change the file, or what the
  /// folder holds: its access list grants that to another account, or another account owns it. What a list denies is
  /// not weighed against what it grants. False after a failure; CallNotImplemented on machines and volumes without
  /// access control.
  virtual Status ordinaryUsersMayWrite(const std::string& path, bool& mayWrite) = 0;
};

class Files : public FileReader {
 public:
  /// Sets all attributes that can be set; whether it is a folder or a link is none of them.
  virtual Status setAttributes(const std::string& path, const Attributes& attributes) = 0;

  /// Opens for writing behind the last byte, creating the file when it is not there. Other programs may read it.
  /// `file` is none after a failure.
  virtual Status openForAppending(const std::string& path, FileHandle& file) = 0;
  /// Opens for writing from the start, creating the file or emptying the one that is there. `file` is none after a
  /// failure.
  virtual Status openForWriting(const std::string& path, FileHandle& file) = 0;
  /// Writes all bytes or fails.
  virtual Status write(FileHandle file, const std::string& bytes) = 0;
  /// Closes the file whatever it returns; a failure tells that what was written may be lost.
  virtual Status close(FileHandle file) = 0;

  /// Copies one file with its attributes; an existing file is replaced, unless it is read-only, hidden or a system file
  /// (AccessDenied).
  virtual Status copyFile(const std::string& from, const std::string& to) = 0;
  /// Moves one file within its volume; an existing file is replaced, unless it is read-only (AccessDenied). Where the
  /// system can, at one stroke: at every moment there is the one or the other.
  virtual Status moveFile(const std::string& from, const std::string& to) = 0;
  /// Deletes one file; a read-only one is refused (AccessDenied).
  virtual Status deleteFile(const std::string& path) = 0;
  /// Creates one folder level. AlreadyExists, PathNotFound (parent missing).
  virtual Status createFolder(const std::string& path) = 0;
  /// Deletes one empty folder; a read-only one is refused (AccessDenied). FolderNotEmpty.
  virtual Status deleteFolder(const std::string& path) = 0;

  // Access lists. A folder's grants are passed on to what is made in it later; what is in it already keeps its own.
  // CallNotImplemented on machines and volumes without access control.

  /// Makes the account the owner of a file or folder, also where its access list refuses that to an administrator.
  virtual Status setOwner(const std::string& path, Account owner) = 0;
  /// Replaces the access list of a file or folder by these grants; nothing is inherited from the folder above.
  virtual Status setAccess(const std::string& path, const std::vector<AccessGrant>& grants) = 0;
  /// Adds those of these grants that the access list does not hold. What it holds stays.
  virtual Status addAccess(const std::string& path, const std::vector<AccessGrant>& grants) = 0;
};

}  // namespace platform
