#include "platform/simulated/windows_installer.h"

#include <algorithm>

#include "platform/simulated/command_line.h"
#include "platform/simulated/text.h"

namespace simulated {

using platform::InstallerHandle;
using platform::Status;
namespace status = platform::status;

namespace {

/// What opening a package that is not there comes to: "the system cannot open the device or file".
constexpr Status OpenFailed = 110;

Status Fitted(const std::string& text, std::size_t capacity, std::string& value) {
  value.clear();
  if (text.size() + 1 > capacity) return status::MoreData;
  value = text;
  return status::Ok;
}

/// The texts in single quotes.
std::vector<std::string> QuotedTexts(const std::string& query) {
  const std::vector<std::string> parts = Split(query, '\'');
  std::vector<std::string> texts;
  for (std::size_t i = 1; i < parts.size(); i += 2) texts.push_back(parts[i]);
  return texts;
}

/// Queries of the form: select COLUMNS from Property [where Property = 'A' or ...].
bool IsPropertyQuery(const std::string& query) {
  const std::string plain = Lower(query);
  const bool selects = StartsWithText(Trim(plain), "select ");
  return selects && (ContainsText(plain, " from property") || ContainsText(plain, " from `property`"));
}

}  // namespace

WindowsInstaller::WindowsInstaller(Registry& registry, Files& files, Journal& journal)
    : registry_(registry), files_(files), journal_(journal) {
  reload();
}

void WindowsInstaller::reload() {
  handles_.clear();
  products_.clear();
  for (const std::string& code : registry_.keys(ProductsKey)) {
    const std::string key = std::string(ProductsKey) + "\\" + code;
    products_.push_back({code, registry_.text(key, "InstalledProductName"), registry_.text(key, "VersionString")});
  }
}

/// Where the product stands in the sorted list, or would stand.
std::vector<Product>::iterator WindowsInstaller::place(const std::string& code) {
  return std::lower_bound(
      products_.begin(), products_.end(), code,
      [](const Product& product, const std::string& wanted) { return CompareText(product.code, wanted) < 0; });
}

std::vector<Product>::iterator WindowsInstaller::find(const std::string& code) {
  const auto there = place(code);
  return there != products_.end() && SameText(there->code, code) ? there : products_.end();
}

void WindowsInstaller::install(const Product& product) {
  const auto there = find(product.code);
  if (there == products_.end()) {
    products_.insert(place(product.code), product);
  } else {
    *there = product;
  }
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
  products_.erase(there);
}

Status WindowsInstaller::enumerateProduct(std::uint32_t index, std::string& productCode) {
  productCode.clear();
  if (!installed_) return status::LibraryNotFound;
  if (index >= products_.size()) return status::NoMoreItems;
  productCode = products_[index].code;
  return status::Ok;
}

Status WindowsInstaller::productInformation(const std::string& productCode, const std::string& property,
                                            std::size_t capacity, std::string& value) {
  value.clear();
  if (!installed_) return status::LibraryNotFound;
  const auto product = find(productCode);
  if (product == products_.end()) return status::UnknownProduct;
  if (property == "InstalledProductName") return Fitted(product->name, capacity, value);
  if (property == "VersionString") return Fitted(product->version, capacity, value);
  const std::string key = std::string(ProductsKey) + "\\" + product->code;
  if (registry_.find(key, property) == nullptr) return status::UnknownProperty;
  return Fitted(registry_.text(key, property), capacity, value);
}

InstallerHandle WindowsInstaller::give(Handle handle) {
  handles_[nextHandle_] = std::move(handle);
  return {nextHandle_++};
}

WindowsInstaller::Declared* WindowsInstaller::findPackage(const std::string& path) {
  const std::string full = files_.fullPath(path);
  for (Declared& declared : packages_)
    if (SameText(declared.package.path, full)) return &declared;
  return nullptr;
}

Status WindowsInstaller::openDatabase(const std::string& package, const std::string&, InstallerHandle& database) {
  database = {};
  if (!installed_) return status::LibraryNotFound;
  if (!files_.exists(package)) return OpenFailed;
  Declared* declared = findPackage(package);
  if (declared == nullptr) return status::PackageOpenFailed;
  declared->used = true;
  Handle handle;
  handle.package = static_cast<std::size_t>(declared - packages_.data());
  database = give(std::move(handle));
  return status::Ok;
}

std::vector<WindowsInstaller::Row> WindowsInstaller::select(const Package& package, const std::string& query) const {
  std::vector<std::pair<std::string, std::string>> all = {
      {"ProductCode", package.code}, {"ProductName", package.name}, {"ProductVersion", package.version}};
  all.insert(all.end(), package.properties.begin(), package.properties.end());
  const std::vector<std::string> wanted = QuotedTexts(query);
  const bool valueOnly = StartsWithText(Trim(query), "select value");
  std::vector<Row> rows;
  for (const auto& [name, value] : all) {
    const bool asked = wanted.empty() || std::find(wanted.begin(), wanted.end(), name) != wanted.end();
    if (!asked || value.empty()) continue;
    rows.push_back(valueOnly ? Row{value} : Row{name, value});
  }
  return rows;
}

Status WindowsInstaller::openView(InstallerHandle database, const std::string& query, InstallerHandle& view) {
  view = {};
  if (!installed_) return status::LibraryNotFound;
  const auto found = handles_.find(database.value);
  if (found == handles_.end()) return status::InvalidHandle;
  if (!IsPropertyQuery(query)) return status::BadQuerySyntax;
  Handle handle;
  handle.package = found->second.package;
  handle.rows = select(packages_[handle.package].package, query);
  view = give(std::move(handle));
  return status::Ok;
}

Status WindowsInstaller::executeView(InstallerHandle view) {
  if (!installed_) return status::LibraryNotFound;
  const auto found = handles_.find(view.value);
  if (found == handles_.end()) return status::InvalidHandle;
  found->second.executed = true;
  found->second.next = 0;
  return status::Ok;
}

Status WindowsInstaller::fetch(InstallerHandle view, InstallerHandle& record) {
  record = {};
  if (!installed_) return status::LibraryNotFound;
  const auto found = handles_.find(view.value);
  if (found == handles_.end()) return status::InvalidHandle;
  Handle& open = found->second;
  if (!open.executed || open.next >= open.rows.size()) return status::NoMoreItems;
  Handle handle;
  handle.rows = {open.rows[open.next++]};
  record = give(std::move(handle));
  return status::Ok;
}

Status WindowsInstaller::recordText(InstallerHandle record, std::uint32_t field, std::size_t capacity,
                                    std::string& value) {
  value.clear();
  if (!installed_) return status::LibraryNotFound;
  const auto found = handles_.find(record.value);
  if (found == handles_.end() || found->second.rows.empty()) return status::InvalidHandle;
  const Row& row = found->second.rows[0];
  return Fitted(field >= 1 && field <= row.size() ? row[field - 1] : "", capacity, value);
}

Status WindowsInstaller::close(InstallerHandle handle) {
  if (!installed_) return status::LibraryNotFound;
  return handles_.erase(handle.value) == 0 ? status::InvalidHandle : status::Ok;
}

}  // namespace simulated
