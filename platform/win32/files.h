// Drives, files and folders of this machine.
#pragma once

#include "platform/files.h"

namespace win32 {

class FilesAdapter final : public platform::Files {
 public:
  std::vector<platform::Drive> drives() override;
  platform::Status volumeLabel(char letter, std::string& label) override;
  platform::Status freeSpace(char letter, std::uint64_t& bytes) override;
  std::string fullPath(const std::string& path) override;
  platform::Status attributes(const std::string& path, platform::Attributes& found) override;
  platform::Status list(const std::string& folder, std::vector<platform::FolderEntry>& entries) override;
  platform::Status read(const std::string& path, std::string& bytes) override;
  platform::Status numberOfNames(const std::string& path, std::uint32_t& names) override;
  platform::Status ordinaryUsersMayWrite(const std::string& path, bool& mayWrite) override;

  platform::Status setAttributes(const std::string& path, const platform::Attributes& wanted) override;
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
};

}  // namespace win32
