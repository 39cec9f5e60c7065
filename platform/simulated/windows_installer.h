// Simulated Windows Installer: the product list, package databases, and what msiexec does with packages. The product
// list lives in the registry, under the key below.
#pragma once

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
  std::size_t openHandles() const { return handles_.size(); }
  /// Reads the product list from the registry again and drops open handles.
  void reload();

 private:
  using Row = std::vector<std::string>;
  struct Declared {
    Package package;
    bool used = false;
  };
  struct Handle {
    std::size_t package = 0;
    std::vector<Row> rows;  ///< of a view; a record has one
    std::size_t next = 0;
    bool executed = false;
  };
  struct Request;

  std::vector<Product>::iterator place(const std::string& code);
  std::vector<Product>::iterator find(const std::string& code);
  Declared* findPackage(const std::string& path);
  Declared* findByCode(const std::string& code, const std::string& version);
  std::string versionOf(const std::string& code);
  Outcome installPackage(const Request& request);
  Outcome removeProduct(const Request& request);
  Outcome repairProduct(const Request& request);
  std::vector<Row> select(const Package& package, const std::string& query) const;
  platform::InstallerHandle give(Handle handle);

  Registry& registry_;
  Files& files_;
  Journal& journal_;
  bool installed_ = true;
  std::vector<Product> products_;
  std::vector<Declared> packages_;
  std::map<std::uint32_t, Handle> handles_;
  std::uint32_t nextHandle_ = 1;
};

}  // namespace simulated
