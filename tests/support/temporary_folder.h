// A folder of the host that goes with its owner.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

class TemporaryFolder {
 public:
  TemporaryFolder() {
    // In memory where the host has such a folder: the tests write many small files.
    if (mkdtemp(path_.data()) != nullptr) return;
    path_ = (std::filesystem::temp_directory_path() / "qx-test-XXXXXX").string();
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error(path_ + ": no temporary folder can be made");
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_ = "/dev/shm/qx-test-XXXXXX";
};
