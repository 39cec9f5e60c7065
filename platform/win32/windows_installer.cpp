#include "platform/win32/windows_installer.h"

#include "platform/win32/system_library.h"
#include "platform/win32/windows_api.h"

#include <msi.h>
#include <msiquery.h>

namespace win32 {

using platform::InstallerHandle;
using platform::Status;
namespace status = platform::status;

/// The library's functions; null where it is missing.
struct WindowsInstaller::Library {
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

template <class Function, class... Arguments>
Status call(Function function, Arguments... arguments) {
  return function == nullptr ? status::LibraryNotFound : function(arguments...);
}

/// Opens something and passes its handle on; 0 after a failure.
template <class Function, class... Arguments>
Status open(InstallerHandle& handle, Function function, Arguments... arguments) {
  MSIHANDLE opened = 0;
  Status result = call(function, arguments..., &opened);
  handle.value = result == status::Ok ? static_cast<std::uint32_t>(opened) : 0;
  return result;
}

/// Reads a text into a buffer of `capacity` characters.
template <class Function, class... Arguments>
Status read(std::string& value, std::size_t capacity, Function function, Arguments... arguments) {
  value.assign(capacity, '\0');
  DWORD length = static_cast<DWORD>(capacity);
  Status result = call(function, arguments..., value.data(), &length);
  value.resize(result == status::Ok ? length : 0);
  return result;
}

}  // namespace

WindowsInstaller::WindowsInstaller() = default;
WindowsInstaller::~WindowsInstaller() = default;

WindowsInstaller::Library& WindowsInstaller::library() {
  if (library_ == nullptr) library_ = std::make_unique<Library>();
  return *library_;
}

Status WindowsInstaller::enumerateProduct(std::uint32_t index, std::string& productCode) {
  char code[39] = "";
  Status result = call(library().enumProducts, index, code);
  productCode = result == status::Ok ? code : "";
  return result;
}

Status WindowsInstaller::productInformation(const std::string& productCode, const std::string& property,
                                            std::size_t capacity, std::string& value) {
  return read(value, capacity, library().getProductInfo, productCode.c_str(), property.c_str());
}

// Without a file for changes the database is opened for reading.
Status WindowsInstaller::openDatabase(const std::string& package, const std::string& persist,
                                      InstallerHandle& database) {
  return open(database, library().openDatabase, package.c_str(), persist.empty() ? nullptr : persist.c_str());
}

Status WindowsInstaller::openView(InstallerHandle database, const std::string& query, InstallerHandle& view) {
  return open(view, library().openView, static_cast<MSIHANDLE>(database.value), query.c_str());
}

Status WindowsInstaller::executeView(InstallerHandle view) {
  return call(library().execute, static_cast<MSIHANDLE>(view.value), static_cast<MSIHANDLE>(0));
}

Status WindowsInstaller::fetch(InstallerHandle view, InstallerHandle& record) {
  return open(record, library().fetch, static_cast<MSIHANDLE>(view.value));
}

Status WindowsInstaller::recordText(InstallerHandle record, std::uint32_t field, std::size_t capacity,
                                    std::string& value) {
  return read(value, capacity, library().getString, static_cast<MSIHANDLE>(record.value), field);
}

Status WindowsInstaller::close(InstallerHandle handle) {
  return call(library().closeHandle, static_cast<MSIHANDLE>(handle.value));
}

}  // namespace win32
