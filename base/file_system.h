// The file-system helper: what the procedures ask of drives, files and folders beyond single operations of the machine.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace assistant {

class clsFso {
 public:
  explicit clsFso(platform::Platform& machine) : machine_(machine) {}

  /// False also for a path that names a folder, or that cannot be looked at.
  bool fileExists(const std::string& path);
  bool folderExists(const std::string& path);
  /// The other way round, where something is left undone for a file or folder that is not there: what cannot be looked
  /// at is not gone.
  bool fileIsGone(const std::string& path);
  bool folderIsGone(const std::string& path);
  bool driveExists(char letter);

  /// The path as it is to be recorded, passed on or run: one like "D:file" in full, as that drive's current folder
  /// makes it now; any other as it is.
  std::string inFull(const std::string& path);

  /// Characters of a path that the system's ANSI functions take.
  static constexpr std::size_t LongestPath = 259;

  /// Creates the folder with all missing parents; one that is there already is fine. Raises 6020 (no such drive) or
  /// 6021 (the folder that could not be made).
  void createFolder(const std::string& path);

  /// Names of the files (or folders) of a folder, sorted by name; none when the folder is not there.
  std::vector<std::string> listFiles(const std::string& folder);
  std::vector<std::string> listFolders(const std::string& folder);

  /// Deletes a file, a read-only one as well. Raises the system's number when it cannot, or when there is none.
  void deleteFileForced(const std::string& path);

  /// Copies a file. Raises the system's number.
  void copyFile(const std::string& from, const std::string& to);

  /// Moves a file within its volume over any existing one, a read-only or hidden one as well. Raises the system's
  /// number.
  void moveFileOver(const std::string& from, const std::string& to);

  /// Copies a file in place of any existing one, which is deleted first: written over, it could be the same file under
  /// another name. The copy is a plain file. Raises the system's number.
  void copyFileAnew(const std::string& from, const std::string& to);

  /// True for what stands for another folder or file.
  bool isLink(const std::string& path);
  /// True for a file that has another name as well, or that does not tell how many it has.
  bool hasOtherNames(const std::string& path);

  struct CopiedFolder {
    std::string from;
    std::string to;
    bool made;  ///< by the copy
  };
  /// Copies a folder with everything in it, in place of what is there; the copies are plain files. A link where a
  /// folder is to be is an error. `entered` is called for each folder before its first file comes. Raises the system's
  /// number, also when it is not there.
  void copyFolderOver(const std::string& from, const std::string& to,
                      const std::function<void(const CopiedFolder&)>& entered);

  /// Deletes a folder with everything in it, read-only files as well, and the file `lastFile` behind all others; of a
  /// link to another folder only the link. Raises the system's number.
  void deleteFolderForced(const std::string& path, const std::string& lastFile = "");

  /// Writes a file anew, over one of that name. Raises the system's number.
  void writeNewFile(const std::string& path, const std::string& bytes);

  /// Name of the machine's operating system, such as "Windows XP"; "0" when the system does not tell (6023 is raised
  /// for nobody: a condition reports it).
  std::string operatingSystem();

 private:
  std::vector<std::string> list(const std::string& folder, bool folders);

  platform::Platform& machine_;
};

}  // namespace assistant
