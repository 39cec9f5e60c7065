#include "exec/msi_queries.h"

#include <algorithm>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/records.h"

namespace {

using platform::InstallerHandle;
using platform::Status;
using platform::WindowsInstaller;

constexpr std::size_t RecordCapacity = 100;
constexpr std::size_t InformationCapacity = 128;

/// Where changes of an opened package would go; none is ever made.
constexpr const char* PersistFile = "c:\\0.tmp";
constexpr const char* PropertyQuery =
    "Select * From Property Where Property = 'ProductName' Or Property = 'ProductVersion' Or Property = 'ProductCode'";

/// A database, view or record that is closed when its scope ends.
class OpenHandle {
 public:
  explicit OpenHandle(WindowsInstaller& installer) : installer_(installer) {}
  ~OpenHandle() {
    if (handle_.value != 0) installer_.close(handle_);
  }
  OpenHandle(const OpenHandle&) = delete;
  OpenHandle& operator=(const OpenHandle&) = delete;

  InstallerHandle& get() { return handle_; }

 private:
  WindowsInstaller& installer_;
  InstallerHandle handle_;
};

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

void ReadRecords(Run& run, InstallerHandle view, PackageData& data) {
  WindowsInstaller& installer = run.machine.installer();
  for (;;) {
    OpenHandle record(installer);
    if (installer.fetch(view, record.get()) != platform::status::Ok) return;
    std::string property;
    installer.recordText(record.get(), 1, RecordCapacity, property);
    std::string* field = Field(data, property);
    if (field == nullptr) continue;
    if (installer.recordText(record.get(), 2, RecordCapacity, *field) == platform::status::Ok) continue;
    run.log.Log("GetMsiData", 0, property + " of the package could not be read; it may be longer than 99 characters",
                false, EntryType::Warning);
  }
}

PackageData ReadPackage(Run& run, const std::string& package) {
  const auto require = [&package](bool fine, int errorNumber) {
    if (!fine) throw modErrorBase::MakeError(errorNumber, {package}, "modMSI.GetMSIData");
  };
  WindowsInstaller& installer = run.machine.installer();
  require(run.fso.FileExists(package), 6140);
  run.log.Log("modMSI.GetMSIData", 0, "Reading " + package);
  OpenHandle database(installer);
  require(installer.openDatabase(package, PersistFile, database.get()) == platform::status::Ok, 6141);
  OpenHandle view(installer);
  require(installer.openView(database.get(), PropertyQuery, view.get()) == platform::status::Ok, 6142);
  require(installer.executeView(view.get()) == platform::status::Ok, 6143);
  PackageData data;
  ReadRecords(run, view.get(), data);
  return data;
}

std::string Information(Run& run, const std::string& code, const char* property, const char* label) {
  std::string value;
  const Status read = run.machine.installer().productInformation(code, property, InformationCapacity, value);
  if (read != platform::status::Ok) {
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
    Status status = platform::status::Ok;
    while ((status = run.machine.installer().enumerateProduct(count, code)) == platform::status::Ok) {
      run.installedProducts.resize(++count);
      run.installedProducts.back() = {code, Information(run, code, "InstalledProductName", "Installed Product Name"),
                                      Information(run, code, "VersionString", "Installed Product Version")};
    }
    run.log.Log("modMSI.ListInstalledProducts", 0, "There are " + std::to_string(count) + " installed products");
    if (status == platform::status::NoMoreItems || status == platform::status::LibraryNotFound) return true;
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
