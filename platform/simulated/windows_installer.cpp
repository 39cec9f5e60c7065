#include "platform/simulated/windows_installer.h"

#include <algorithm>
#include <cstddef>

#include "platform/simulated/command_line.h"
#include "platform/simulated/text.h"

namespace simulated {

using platform::PackageHandle;
using platform::PackageProperty;
using platform::Status;
using platform::ViewHandle;

namespace {

/// What opening a package that is not there comes to: "the system cannot open the device or file".
constexpr Status OpenFailed{110};

/// The rows of the Property table that the view of a package shows, as far as the package has them.
std::vector<PackageProperty> ShownProperties(const Package& package) {
  std::vector<std::pair<std::string, std::string>> all = {
      {"ProductCode", package.code}, {"ProductName", package.name}, {"ProductVersion", package.version}};
  all.insert(all.end(), package.properties.begin(), package.properties.end());
  std::vector<PackageProperty> shown;
  for (const auto& [name, value] : all) {
    const bool isAsked = name == "ProductCode" || name == "ProductName" || name == "ProductVersion";
    if (isAsked && !value.empty()) shown.push_back({name, value});
  }
  return shown;
}

/// A product code as the installer's own keys are named, which are listed in the order of these names: the characters
/// of the first three groups backwards, those of each byte behind them changed over.
std::string KeyName(const std::string& code) {
  constexpr std::size_t groups[][2] = {{1, 8},  {10, 4}, {15, 4}, {20, 2}, {22, 2}, {25, 2},
                                       {27, 2}, {29, 2}, {31, 2}, {33, 2}, {35, 2}};
  constexpr std::size_t codeLength = 38;
  if (code.size() != codeLength) return Lower(code);
  std::string name;
  name.reserve(codeLength);
  for (const auto& [first, count] : groups)
    for (std::size_t at = first + count; at > first; --at) name += code[at - 1];
  return Lower(std::move(name));
}

}  // namespace

WindowsInstaller::WindowsInstaller(Registry& registry, Files& files, Journal& journal)
    : registry_(registry), files_(files), journal_(journal) {
  reload();
}

void WindowsInstaller::reload() {
  openPackages_.clear();
  views_.clear();
  products_.clear();
  keyNames_.clear();
  for (const std::string& code : registry_.keys(ProductsKey)) {
    const std::string key = std::string(ProductsKey) + "\\" + code;
    list({code, registry_.text(key, "InstalledProductName"), registry_.text(key, "VersionString")});
  }
}

/// Puts the product into its place in the list, or in the place of what was there with its code.
void WindowsInstaller::list(const Product& product) {
  if (const auto there = find(product.code); there != products_.end()) {
    *there = product;
    return;
  }
  const std::string name = KeyName(product.code);
  const auto place = std::lower_bound(keyNames_.begin(), keyNames_.end(), name) - keyNames_.begin();
  keyNames_.insert(keyNames_.begin() + place, name);
  products_.insert(products_.begin() + place, product);
}

std::vector<Product>::iterator WindowsInstaller::find(const std::string& code) {
  // Most are asked for as they have just been listed.
  if (listed_ < products_.size() && products_[listed_].code == code)
    return products_.begin() + static_cast<std::ptrdiff_t>(listed_);
  const std::string name = KeyName(code);
  const auto there = std::lower_bound(keyNames_.begin(), keyNames_.end(), name);
  if (there == keyNames_.end() || *there != name) return products_.end();
  return products_.begin() + (there - keyNames_.begin());
}

void WindowsInstaller::install(const Product& product) {
  list(product);
  const std::string key = std::string(ProductsKey) + "\\" + product.code;
  registry_.putText(key, "InstalledProductName", product.name);
  registry_.putText(key, "VersionString", product.version);
  journal_.record("product installed " + product.code + " " + product.name + " " + product.version);
}

void WindowsInstaller::remove(const std::string& code) {
  const auto there = find(code);
  if (there == products_.end()) return;
  journal_.record("product removed " + there->code + " " + there->name + " " + there->version);
  registry_.removeTree(std::string(ProductsKey) + "\\" + there->code);
  keyNames_.erase(keyNames_.begin() + (there - products_.begin()));
  products_.erase(there);
}

Status WindowsInstaller::enumerateProduct(std::uint32_t index, std::string& productCode) {
  productCode.clear();
  if (!installed_) return Status::LibraryNotFound;
  if (index >= products_.size()) return Status::NoMoreItems;
  productCode = products_[index].code;
  listed_ = index;
  return Status::Ok;
}

Status WindowsInstaller::productInformation(const std::string& productCode, platform::ProductProperty property,
                                            std::string& value) {
  value.clear();
  if (!installed_) return Status::LibraryNotFound;
  const auto product = find(productCode);
  if (product == products_.end()) return Status::UnknownProduct;
  // The version of a product that is only advertised is no property of it.
  if (property == platform::ProductProperty::Version && product->version.empty()) return Status::UnknownProperty;
  value = property == platform::ProductProperty::Name ? product->name : product->version;
  return Status::Ok;
}

WindowsInstaller::Declared* WindowsInstaller::findPackage(const std::string& path) {
  const std::string full = files_.fullPath(path);
  for (Declared& declared : packages_)
    if (SameText(declared.package.path, full)) return &declared;
  return nullptr;
}

Status WindowsInstaller::openPackage(const std::string& path, PackageHandle& package) {
  package = {};
  if (!installed_) return Status::LibraryNotFound;
  if (!files_.exists(path)) return OpenFailed;
  Declared* declared = findPackage(path);
  if (declared == nullptr) return Status::PackageOpenFailed;
  declared->used = true;
  package.value = nextHandle_++;
  openPackages_[package.value] = static_cast<std::size_t>(declared - packages_.data());
  return Status::Ok;
}

Status WindowsInstaller::openProperties(PackageHandle package, ViewHandle& view) {
  view = {};
  if (!installed_) return Status::LibraryNotFound;
  const auto found = openPackages_.find(package.value);
  if (found == openPackages_.end()) return Status::InvalidHandle;
  view.value = nextHandle_++;
  views_[view.value].properties = ShownProperties(packages_[found->second].package);
  return Status::Ok;
}

Status WindowsInstaller::executeView(ViewHandle view) {
  if (!installed_) return Status::LibraryNotFound;
  const auto found = views_.find(view.value);
  if (found == views_.end()) return Status::InvalidHandle;
  found->second.executed = true;
  found->second.next = 0;
  return Status::Ok;
}

Status WindowsInstaller::nextProperty(ViewHandle view, PackageProperty& property) {
  property = {};
  if (!installed_) return Status::LibraryNotFound;
  const auto found = views_.find(view.value);
  if (found == views_.end()) return Status::InvalidHandle;
  View& open = found->second;
  if (!open.executed || open.next >= open.properties.size()) return Status::NoMoreItems;
  property = open.properties[open.next++];
  return Status::Ok;
}

Status WindowsInstaller::closeView(ViewHandle view) {
  if (!installed_) return Status::LibraryNotFound;
  return views_.erase(view.value) == 0 ? Status::InvalidHandle : Status::Ok;
}

Status WindowsInstaller::closePackage(PackageHandle package) {
  if (!installed_) return Status::LibraryNotFound;
  return openPackages_.erase(package.value) == 0 ? Status::InvalidHandle : Status::Ok;
}

}  // namespace simulated
