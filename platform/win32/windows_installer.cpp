#include "platform/win32/windows_installer.h"

#include <algorithm>

#include "platform/win32/system_library.h"

#include <msi.h>
#include <msiquery.h>

namespace win32 {

using platform::PackageHandle;
using platform::PackageProperty;
using platform::ProductProperty;
using platform::Status;
using platform::ViewHandle;

/// The library's functions; null where it is missing.
struct WindowsInstallerAdapter::Library {
  SystemLibrary msi{"msi.dll"};
  decltype(&MsiEnumProductsA) enumProducts = msi.find<decltype(MsiEnumProductsA)>("MsiEnumProductsA");
  decltype(&MsiGetProductInfoA) getProductInfo = msi.find<decltype(MsiGetProductInfoA)>("MsiGetProductInfoA");
  decltype(&MsiOpenDatabaseA) openDatabase = msi.find<decltype(MsiOpenDatabaseA)>("MsiOpenDatabaseA");
  decltype(&MsiDatabaseOpenViewA) openView = msi.find<decltype(MsiDatabaseOpenViewA)>("MsiDatabaseOpenViewA");
  decltype(&MsiViewExecute) execute = msi.find<decltype(MsiViewExecute)>("MsiViewExecute");
  decltype(&MsiViewFetch) fetch = msi.find<decltype(MsiViewFetch)>("MsiViewFetch");
  decltype(&MsiRecordGetStringA) getString = msi.find<decltype(MsiRecordGetStringA)>("MsiRecordGetStringA");
  decltype(&MsiCloseHandle) closeHandle = msi.find<decltype(MsiCloseHandle)>("MsiCloseHandle");
};

namespace {

/// Where changes of an opened package would go; none is ever made.
constexpr const char* PersistFile = "c:\\0.tmp";
constexpr const char* PropertyQuery =
    "Select * From Property Where Property = 'ProductName' Or Property = 'ProductVersion' Or Property = 'ProductCode'";

/// Nearly every property fits this; what does not is asked for again with more room.
constexpr DWORD UsualTextSize = 128;

template <class Function, class... Arguments>
Status Call(Function function, Arguments... arguments) {
  return function == nullptr ? Status::LibraryNotFound : static_cast<Status>(function(arguments...));
}

/// Opens something and passes its handle on; none after a failure.
template <class Handle, class Function, class... Arguments>
Status OpenBy(Handle& handle, Function function, Arguments... arguments) {
  MSIHANDLE opened = 0;
  Status outcome = Call(function, arguments..., &opened);
  handle.value = outcome == Status::Ok ? static_cast<std::uint32_t>(opened) : 0;
  return outcome;
}

/// A whole text; empty after a failure.
template <class Function, class... Arguments>
Status ReadText(std::string& value, Function function, Arguments... arguments) {
  Status outcome = Status::MoreData;
  DWORD length = 0;
  for (DWORD size = UsualTextSize; outcome == Status::MoreData; size = std::max(length + 1, size * 2)) {
    value.assign(size, '\0');
    length = size;
    outcome = Call(function, arguments..., value.data(), &length);
  }
  value.resize(outcome == Status::Ok ? length : 0);
  return outcome;
}

/// A record that was fetched: nobody outside sees it.
struct RecordHandle {
  std::uint32_t value = 0;
};

class OwnedRecord {
 public:
  explicit OwnedRecord(decltype(&MsiCloseHandle) closeHandle) : closeHandle_(closeHandle) {}
  ~OwnedRecord() {
    if (record_.value != 0) Call(closeHandle_, get());
  }
  OwnedRecord(const OwnedRecord&) = delete;
  OwnedRecord& operator=(const OwnedRecord&) = delete;

  RecordHandle& receive() { return record_; }
  MSIHANDLE get() const { return static_cast<MSIHANDLE>(record_.value); }

 private:
  decltype(&MsiCloseHandle) closeHandle_;
  RecordHandle record_;
};

}  // namespace

WindowsInstallerAdapter::WindowsInstallerAdapter() = default;
WindowsInstallerAdapter::~WindowsInstallerAdapter() = default;

WindowsInstallerAdapter::Library& WindowsInstallerAdapter::library() {
  if (library_ == nullptr) library_ = std::make_unique<Library>();
  return *library_;
}

Status WindowsInstallerAdapter::enumerateProduct(std::uint32_t index, std::string& productCode) {
  char code[39] = "";
  Status outcome = Call(library().enumProducts, index, code);
  productCode = outcome == Status::Ok ? code : "";
  return outcome;
}

Status WindowsInstallerAdapter::productInformation(const std::string& productCode, ProductProperty property,
                                                   std::string& value) {
  const char* name = property == ProductProperty::Name ? "InstalledProductName" : "VersionString";
  return ReadText(value, library().getProductInfo, productCode.c_str(), name);
}

Status WindowsInstallerAdapter::openPackage(const std::string& path, PackageHandle& package) {
  return OpenBy(package, library().openDatabase, path.c_str(), PersistFile);
}

Status WindowsInstallerAdapter::openProperties(PackageHandle package, ViewHandle& view) {
  return OpenBy(view, library().openView, static_cast<MSIHANDLE>(package.value), PropertyQuery);
}

Status WindowsInstallerAdapter::executeView(ViewHandle view) {
  return Call(library().execute, static_cast<MSIHANDLE>(view.value), static_cast<MSIHANDLE>(0));
}

Status WindowsInstallerAdapter::nextProperty(ViewHandle view, PackageProperty& property) {
  property = {};
  OwnedRecord record(library().closeHandle);
  Status fetched = OpenBy(record.receive(), library().fetch, static_cast<MSIHANDLE>(view.value));
  if (fetched != Status::Ok) return fetched;
  ReadText(property.name, library().getString, record.get(), 1U);
  property.valueRead = ReadText(property.value, library().getString, record.get(), 2U);
  return Status::Ok;
}

Status WindowsInstallerAdapter::closeView(ViewHandle view) {
  return Call(library().closeHandle, static_cast<MSIHANDLE>(view.value));
}

Status WindowsInstallerAdapter::closePackage(PackageHandle package) {
  return Call(library().closeHandle, static_cast<MSIHANDLE>(package.value));
}

}  // namespace win32
