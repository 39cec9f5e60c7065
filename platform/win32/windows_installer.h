// Windows Installer of this machine, if it has one.
#pragma once

#include <memory>

#include "platform/windows_installer.h"

namespace win32 {

class WindowsInstallerAdapter final : public platform::WindowsInstaller {
 public:
  WindowsInstallerAdapter();
  ~WindowsInstallerAdapter() override;

  platform::Status enumerateProduct(std::uint32_t index, std::string& productCode) override;
  platform::Status productInformation(const std::string& productCode, platform::ProductProperty property,
                                      std::string& value) override;
  platform::Status openPackage(const std::string& path, platform::PackageHandle& package) override;
  platform::Status openProperties(platform::PackageHandle package, platform::ViewHandle& view) override;
  platform::Status executeView(platform::ViewHandle view) override;
  platform::Status nextProperty(platform::ViewHandle view, platform::PackageProperty& property) override;
  platform::Status closeView(platform::ViewHandle view) override;
  platform::Status closePackage(platform::PackageHandle package) override;

 private:
  struct Library;
  /// Loaded when it is first needed: with all that it needs itself it is larger than the program.
  Library& library();

  std::unique_ptr<Library> library_;
};

}  // namespace win32
