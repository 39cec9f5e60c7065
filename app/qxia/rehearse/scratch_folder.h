// A folder of the host for a machine that nobody keeps.
#pragma once

#include <string>

namespace qxia {

class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::string& path() const { return path_; }
  /// Leaves the folder where it is.
  void keep() { kept_ = true; }

 private:
  std::string path_;
  bool kept_ = false;
};

}  // namespace qxia
