// Port: Windows Installer (source: the Msi...A functions of msi.dll, loaded by its full system path).
#pragma once

#include <cstdint>
#include <string>

#include "platform/status.h"

namespace platform {

/// What is asked of an installed product.
enum class ProductProperty { Name, Version };

/// An open package; 0 is none.
struct PackageHandle {
  std::uint32_t value = 0;

  bool operator==(const PackageHandle&) const = default;
};

/// A view of an open package's properties; 0 is none.
struct ViewHandle {
  std::uint32_t value = 0;

  bool operator==(const ViewHandle&) const = default;
};

/// A property of a package, such as "ProductName". A name that cannot be read is empty, and so is such a value, whose
/// status tells why.
struct PackageProperty {
  std::string name;
  std::string value;
  Status valueRead = Status::Ok;
};

/// Every method that returns a status returns LibraryNotFound on a machine without Windows Installer.
class WindowsInstaller {
 public:
  virtual ~WindowsInstaller() = default;

  /// The index-th installed product's code ("{...}", 38 characters). NoMoreItems behind the last; the code is empty
  /// then, as after any failure.
  virtual Status enumerateProduct(std::uint32_t index, std::string& productCode) = 0;

  /// A property of an installed product, whole; empty after a failure. UnknownProduct, UnknownProperty.
  virtual Status productInformation(const std::string& productCode, ProductProperty property, std::string& value) = 0;

  // A package's properties are read in steps that fail each for reasons of its own: the file is no package, it has no
  // table of properties, the table cannot be searched. A handle is none after a failure.

  /// Opens a package file for reading.
  virtual Status openPackage(const std::string& path, PackageHandle& package) = 0;
  /// Opens a view of the product's name, version and code.
  virtual Status openProperties(PackageHandle package, ViewHandle& view) = 0;
  /// Searches what the view stands for; its properties follow from the first one on.
  virtual Status executeView(ViewHandle view) = 0;

  /// The next property, in no promised order. NoMoreItems behind the last.
  virtual Status nextProperty(ViewHandle view, PackageProperty& property) = 0;

  virtual Status closeView(ViewHandle view) = 0;
  virtual Status closePackage(PackageHandle package) = 0;
};

}  // namespace platform
