// Port: Windows Installer (source: the Msi...A functions of msi.dll, loaded by its full system path).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/status.h"

namespace platform {

/// An open database, view or record; 0 is none.
struct InstallerHandle {
  std::uint32_t value = 0;
};

/// Every method returns the system's status number; LibraryNotFound on a machine without Windows Installer.
/// A text that does not fit its `capacity` (in characters, the terminating zero included) is MoreData and stays empty.
class WindowsInstaller {
 public:
  virtual ~WindowsInstaller() = default;

  /// The index-th installed product's code ("{...}", 38 characters). NoMoreItems behind the last.
  virtual Status enumerateProduct(std::uint32_t index, std::string& productCode) = 0;

  /// A property of an installed product, such as "InstalledProductName". UnknownProduct, UnknownProperty.
  virtual Status productInformation(const std::string& productCode, const std::string& property, std::size_t capacity,
                                    std::string& value) = 0;

  /// Opens a package's database; `persist` names the file that would receive its changes.
  virtual Status openDatabase(const std::string& package, const std::string& persist, InstallerHandle& database) = 0;
  virtual Status openView(InstallerHandle database, const std::string& query, InstallerHandle& view) = 0;
  virtual Status executeView(InstallerHandle view) = 0;

  /// The next record; NoMoreItems behind the last.
  virtual Status fetch(InstallerHandle view, InstallerHandle& record) = 0;

  /// A field of a record, counted from 1.
  virtual Status recordText(InstallerHandle record, std::uint32_t field, std::size_t capacity, std::string& value) = 0;

  virtual Status close(InstallerHandle handle) = 0;
};

}  // namespace platform
