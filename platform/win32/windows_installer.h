// Windows Installer of this machine, if it has one.
#pragma once

#include <memory>

#include "platform/windows_installer.h"

namespace win32 {

class WindowsInstaller : public platform::WindowsInstaller {
 public:
  WindowsInstaller();
  ~WindowsInstaller() override;

  platform::Status enumerateProduct(std::uint32_t index, std::string& productCode) override;
  platform::Status productInformation(const std::string& productCode, const std::string& property, std::size_t capacity,
                                      std::string& value) override;
  platform::Status openDatabase(const std::string& package, const std::string& persist,
                                platform::InstallerHandle& database) override;
  platform::Status openView(platform::InstallerHandle database, const std::string& query,
                            platform::InstallerHandle& view) override;
  platform::Status executeView(platform::InstallerHandle view) override;
  platform::Status fetch(platform::InstallerHandle view, platform::InstallerHandle& record) override;
  platform::Status recordText(platform::InstallerHandle record, std::uint32_t field, std::size_t capacity,
                              std::string& value) override;
  platform::Status close(platform::InstallerHandle handle) override;

 private:
  struct Library;
  /// Loaded when it is first needed: with all that it needs itself it is larger than the program.
  Library& library();

  std::unique_ptr<Library> library_;
};

}  // namespace win32
