// Simulated Windows Installer: the product list, package databases, and what msiexec does with packages. The product
// list lives in the registry, under the key below.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/simulated/outcome.h"
#include "platform/simulated/registry.h"
#include "platform/windows_installer.h"

namespace simulated {

inline constexpr const char* ProductsKey =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\Products";

class WindowsInstaller : public platform::WindowsInstaller {
 public:
  WindowsInstaller(Registry& registry, Files& files, Journal& journal);

  platform::Status enumerateProduct(std::uint32_t index, std::string& productCode) override;
  platform::Status productInformation(const std::string& productCode, platform::ProductProperty property,
                                      std::string& value) override;
  platform::Status openPackage(const std::string& path, platform::PackageHandle& package) override;
  platform::Status openProperties(platform::PackageHandle package, platform::ViewHandle& view) override;
  platform::Status executeView(platform::ViewHandle view) override;
  platform::Status nextProperty(platform::ViewHandle view, platform::PackageProperty& property) override;
  platform::Status closeView(platform::ViewHandle view) override;
  platform::Status closePackage(platform::PackageHandle package) override;

  void declare(Package package);
  void install(const Product& product);
  void remove(const std::string& code);
  /// Sorted by code.
  const std::vector<Product>& products() const { return products_; }
  /// Without Windows Installer on the machine every method returns LibraryNotFound.
  void setInstalled(bool installed) { installed_ = installed; }
  /// What msiexec does with this command line. A package nobody declared is recorded as undeclared.
  Outcome execute(const std::string& commandLine);
  /// Packages that were neither read nor executed.
  std::vector<std::string> unused() const;
  std::size_t openHandles() const { return openPackages_.size() + views_.size(); }
  /// Reads the product list from the registry again and drops open handles.
  void reload();

 private:
  struct Declared {
    Package package;
    bool used = false;
  };
  struct View {
    std::vector<platform::PackageProperty> properties;
    std::size_t next = 0;
    bool executed = false;
  };
  struct Request;

  void list(const Product& product);
  std::vector<Product>::iterator find(const std::string& code);
  Declared* findPackage(const std::string& path);
  bool isMissingPackage(const std::string& target) const;
  Declared* findByCode(const std::string& code, const std::string& version);
  std::string versionOf(const std::string& code);
  Outcome installPackage(const Request& request);
  Outcome removeProduct(const Request& request);
  Outcome repairProduct(const Request& request);

  Registry& registry_;
  Files& files_;
  Journal& journal_;
  bool installed_ = true;
  std::vector<Product> products_;      ///< in the order of their keys' names
  std::vector<std::string> keyNames_;  ///< of each product
  std::size_t listed_ = 0;             ///< the product that was enumerated last
  std::vector<Declared> packages_;
  std::map<std::uint32_t, std::size_t> openPackages_;  ///< to the index of the package
  std::map<std::uint32_t, View> views_;
  std::uint32_t nextHandle_ = 1;
};

}  // namespace simulated
