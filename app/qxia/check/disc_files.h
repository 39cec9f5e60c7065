// The files of one disc, looked up as Windows would find them: without regard to letter case. Only looks.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace qxia::check {

/// What a path of the inis leads to on the disc.
struct Found {
  enum class Is {
    Missing,
    There,
    OtherCase,   ///< there, but spelt in other letters
    OutOfMedia,  ///< a link leads to what is not on the media; it is not followed
  };
  Is is = Is::Missing;
  bool isFolder = false;
  bool isReadable = true;
  std::string host;   ///< the path on this computer
  std::string shown;  ///< the path from the disc's root as it is spelt there, with slashes

  bool isThere() const { return is == Is::There || is == Is::OtherCase; }
  bool isFile() const { return isThere() && !isFolder; }
};

struct FolderItem {
  std::string name;
  bool isFolder = false;
  bool leadsOut = false;
};

class DiscFiles {
 public:
  explicit DiscFiles(std::string root);

  /// `path` is a Windows path from the disc's root, in the code page of the inis.
  const Found& look(const std::string& path) const;
  /// The files and folders in a folder of this computer. Raises UsageError where it cannot be read.
  const std::vector<FolderItem>& items(const std::string& hostFolder) const;

 private:
  Found walk(const std::string& path) const;
  bool leadsOut(const std::string& hostPath) const;

  std::string root_;
  std::string realRoot_;
  mutable std::map<std::string, std::vector<FolderItem>> listed_;
  mutable std::map<std::string, Found> found_;
};

}  // namespace qxia::check
