#include "exec/msi_queries.h"

#include <algorithm>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/records.h"
#include "platform/owned.h"

namespace {

using platform::Status;
using platform::WindowsInstaller;

/// Characters that are read of a package's and of an installed product's property.
constexpr std::size_t LongestPackageText = 99;
constexpr std::size_t LongestProductText = 127;

struct PackageData {
  std::string name;
  std::string version;
  std::string code;
};

std::string* Field(PackageData& data, const std::string& property) {
  if (property == "ProductName") return &data.name;
  if (property == "ProductVersion") return &data.version;
  return property == "ProductCode" ? &data.code : nullptr;
}

void ReadProperties(Run& run, platform::ViewHandle view, PackageData& data) {
  platform::PackageProperty property;
  while (run.machine.installer().nextProperty(view, property) == Status::Ok) {
    std::string* field = Field(data, property.name);
    if (field == nullptr) continue;
    const bool isReadable = property.valueRead == Status::Ok && property.value.size() <= LongestPackageText;
    *field = isReadable ? property.value : std::string();
    if (isReadable) continue;
    run.log.Log("GetMsiData", 0,
                property.name + " of the package could not be read; it may be longer than 99 characters", false,
                EntryType::Warning);
  }
}

PackageData ReadPackage(Run& run, const std::string& package) {
  const auto require = [&package](bool fine, int errorNumber) {
    if (!fine) throw modErrorBase::MakeError(errorNumber, {package}, "modMSI.GetMSIData");
  };
  WindowsInstaller& installer = run.machine.installer();
  require(run.fso.FileExists(package), 6140);
  run.log.Log("modMSI.GetMSIData", 0, "Reading " + package);
  platform::OwnedPackage opened(installer);
  require(installer.openPackage(package, opened.receive()) == Status::Ok, 6141);
  platform::OwnedView view(installer);
  require(installer.openProperties(*opened, view.receive()) == Status::Ok, 6142);
  require(installer.executeView(*view) == Status::Ok, 6143);
  PackageData data;
  ReadProperties(run, *view, data);
  return data;
}

std::string Information(Run& run, const std::string& code, platform::ProductProperty property, const char* label) {
  std::string value;
  const Status read = run.machine.installer().productInformation(code, property, value);
  if (read != Status::Ok || value.size() > LongestProductText) {
    value.clear();
    run.log.Log("modMSI.ListInstalledProducts", 6147, modErrorBase::GetErrorText(6147, {label, code}), false,
                EntryType::Error);
  }
  return value;
}

}  // namespace

namespace modMSI {

bool GetMSIData(Run& run, const std::string& package, std::string& productName, std::string& productVersion,
                std::string& productCode) {
  PackageData data;
  const bool read = Guarded(run, "modMSI.GetMSIData", [&] {
    data = ReadPackage(run, package);
    run.log.Log("GetMsiData", 0, "Name:" + data.name);
    run.log.Log("GetMsiData", 0, "Version:" + data.version);
    run.log.Log("GetMsiData", 0, "Code:" + data.code);
    return true;
  });
  productName = data.name;
  productVersion = data.version;
  productCode = data.code;
  return read;
}

}  // namespace modMSI

bool ListInstalledProducts(Run& run) {
  return Guarded(run, "modMSI.ListInstalledProducts", [&] {
    if (run.verbose) run.log.Log("modMSI.ListInstalledProducts", 0, "Retrieving Installed MSI's from PC");
    run.installedProducts.assign(1, {});
    std::uint32_t count = 0;
    std::string code;
    Status status = Status::Ok;
    while ((status = run.machine.installer().enumerateProduct(count, code)) == Status::Ok) {
      run.installedProducts.resize(++count);
      run.installedProducts.back() = {
          code, Information(run, code, platform::ProductProperty::Name, "Installed Product Name"),
          Information(run, code, platform::ProductProperty::Version, "Installed Product Version")};
    }
    run.log.Log("modMSI.ListInstalledProducts", 0, "There are " + std::to_string(count) + " installed products");
    if (status == Status::NoMoreItems || status == Status::LibraryNotFound) return true;
    run.log.Log("modMSI.ListInstalledProducts", 0,
                "The list of installed products broke off: " + modErrorBase::SystemErrorText(status), false,
                EntryType::Warning);
    return false;
  });
}

void LogInstalledMSIs(Run& run) {
  constexpr const char* source = "modQXInstallationMain.LogInstalledMSIs";
  Guarded(run, source, [&] {
    ListInstalledProducts(run);
    run.log.Log(source, 0, "The following MSI's are installed on this PC");
    for (const InstalledProduct& product : run.installedProducts) {
      run.log.Log(source, 0, product.name + ": " + product.code + " v" + product.version + " <BR>");
    }
  });
}

bool IsProductCode(const std::string& code) {
  return !IsNotGiven(code);
}

const InstalledProduct* FindInstalledProduct(const Run& run, const std::string& code) {
  if (!IsProductCode(code)) return nullptr;
  const auto found = std::find_if(run.installedProducts.begin(), run.installedProducts.end(),
                                  [&](const InstalledProduct& product) { return product.code == code; });
  return found == run.installedProducts.end() ? nullptr : &*found;
}
