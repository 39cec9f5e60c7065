#include "exec/msi_queries.h"

#include <algorithm>
#include <cstdint>

#include "base/error_texts.h"
#include "base/procedure.h"
#include "base/record_keys.h"
#include "base/text.h"
#include "platform/owned.h"

namespace assistant {
namespace {

using platform::ProductProperty;
using platform::Status;

/// Characters that a property may have; a longer one is as good as unreadable.
constexpr std::size_t LongestPackageProperty = 99;
constexpr std::size_t LongestProductProperty = 127;

std::string* Field(PackageData& data, const std::string& property) {
  if (property == "ProductName") return &data.name;
  if (property == "ProductVersion") return &data.version;
  return property == "ProductCode" ? &data.code : nullptr;
}

void TakeProperty(const Procedure& here, const platform::PackageProperty& property, PackageData& data) {
  std::string* const field = Field(data, property.name);
  if (field == nullptr) return;
  const bool fits = property.valueRead == Status::Ok && property.value.size() <= LongestPackageProperty;
  *field = fits ? property.value : std::string();
  if (fits) return;
  here.warn(property.name + " of the package could not be read; it may be longer than " +
            std::to_string(LongestPackageProperty) + " characters");
}

PackageData ReadPackage(const Procedure& here, const Services& services, const std::string& package) {
  const auto require = [&](bool fine, int errorNumber) {
    if (!fine) throw here.failure(errorNumber, {package});
  };
  platform::WindowsInstaller& installer = services.machine.installer();
  require(services.fso.fileExists(package), 6140);
  here.action("Reading " + package);
  platform::OwnedPackage opened(installer);
  require(installer.openPackage(package, opened.receive()) == Status::Ok, 6141);
  platform::OwnedView view(installer);
  require(installer.openProperties(*opened, view.receive()) == Status::Ok, 6142);
  require(installer.executeView(*view) == Status::Ok, 6143);
  PackageData data;
  platform::PackageProperty property;
  Status status = Status::Ok;
  while ((status = installer.nextProperty(*view, property)) == Status::Ok) TakeProperty(here, property, data);
  // A package that tells no more half of the way would be recorded without its code.
  require(status == Status::NoMoreItems, 6143);
  data.read = true;
  return data;
}

/// One property of an installed product, and what an error calls it.
struct Asked {
  ProductProperty property;
  const char* label;
};

std::string Information(const Procedure& here, const Services& services, const std::string& code, const Asked& asked) {
  std::string value;
  const Status read = services.machine.installer().productInformation(code, asked.property, value);
  if (read == Status::Ok && value.size() <= LongestProductProperty) return value;
  here.error(6147, {asked.label, code});
  return std::string();
}

/// True when the list ended of itself. A machine without Windows Installer has no products.
bool IsWhole(const Procedure& here, Status end) {
  if (end == Status::NoMoreItems || end == Status::LibraryNotFound) return true;
  here.warn("The list of installed products broke off: " + modErrorBase::SystemErrorText(end));
  return false;
}

}  // namespace

bool IsProductCode(const std::string& code) {
  return !IsNotGiven(code);
}

const InstalledProduct* InstalledProducts::find(const std::string& code) const {
  if (!IsProductCode(code)) return nullptr;
  const std::string wanted = Trim(code);
  const auto found = std::find_if(list.begin(), list.end(), [&](const InstalledProduct& product) {
    return EqualIgnoringCase(Trim(product.code), wanted);
  });
  return found == list.end() ? nullptr : &*found;
}

PackageData GetMSIData(const Services& services, const std::string& package) {
  const Procedure here(services.log, "modMSI.GetMSIData");
  return here.guard([&] {
    PackageData data = ReadPackage(here, services, package);
    here.action("Name:" + data.name);
    here.action("Version:" + data.version);
    here.action("Code:" + data.code);
    return data;
  });
}

InstalledProducts ListInstalledProducts(const Services& services) {
  const Procedure here(services.log, "modMSI.ListInstalledProducts");
  InstalledProducts products;
  products.list.resize(1);
  products.whole = here.guard([&] {
    here.detail("Retrieving Installed MSI's from PC");
    std::uint32_t count = 0;
    std::string code;
    Status status = Status::Ok;
    while ((status = services.machine.installer().enumerateProduct(count, code)) == Status::Ok) {
      products.list.resize(++count);
      products.list.back() = {
          code, Information(here, services, code, {ProductProperty::Name, "Installed Product Name"}),
          Information(here, services, code, {ProductProperty::Version, "Installed Product Version"})};
    }
    here.action("There are " + std::to_string(count) + " installed products");
    return IsWhole(here, status);
  });
  return products;
}

void LogInstalledMSIs(const Services& services) {
  const Procedure here(services.log, "modQXInstallationMain.LogInstalledMSIs");
  here.guard([&] {
    const InstalledProducts products = ListInstalledProducts(services);
    here.action("The following MSI's are installed on this PC");
    for (const InstalledProduct& product : products.list) {
      here.action(product.name + ": " + product.code + " v" + product.version + " <BR>");
    }
  });
}

}  // namespace assistant
