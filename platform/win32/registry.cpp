#include "platform/win32/registry.h"

#include "platform/win32/windows_api.h"

namespace win32 {

using platform::KeyAccess;
using platform::KeyHandle;
using platform::RegistryRoot;
using platform::Status;
using platform::ValueType;
namespace status = platform::status;

namespace {

// The predefined keys are numbers, sign-extended where handles are wider.
HKEY rootKey(RegistryRoot root) {
  return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(root)));
}

HKEY systemKey(KeyHandle key) {
  return reinterpret_cast<HKEY>(key.value);
}

KeyHandle portKey(HKEY key) {
  return {reinterpret_cast<std::uintptr_t>(key)};
}

// The NT family tells a malformed path by a number of its own.
Status portStatus(LONG result) {
  return result == ERROR_BAD_PATHNAME ? status::BadKey : static_cast<Status>(result);
}

bool hasSubKeys(HKEY root, const std::string& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  char name[256];
  DWORD length = sizeof name;
  LONG result = RegEnumKeyExA(key, 0, name, &length, nullptr, nullptr, nullptr, nullptr);
  RegCloseKey(key);
  return result == ERROR_SUCCESS;
}

}  // namespace

Status Registry::openKey(RegistryRoot root, const std::string& path, KeyAccess access, KeyHandle& key) {
  HKEY opened = nullptr;
  LONG result = RegOpenKeyExA(rootKey(root), path.c_str(), 0, static_cast<REGSAM>(access), &opened);
  key = portKey(result == ERROR_SUCCESS ? opened : nullptr);
  return portStatus(result);
}

Status Registry::createKey(RegistryRoot root, const std::string& path, KeyAccess access, KeyHandle& key) {
  HKEY opened = nullptr;
  LONG result = RegCreateKeyExA(rootKey(root), path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                static_cast<REGSAM>(access), nullptr, &opened, nullptr);
  key = portKey(result == ERROR_SUCCESS ? opened : nullptr);
  return portStatus(result);
}

Status Registry::queryValue(KeyHandle key, const std::string& name, std::size_t capacity, ValueType& type,
                            std::string& data) {
  data.assign(capacity, '\0');
  DWORD systemType = 0;
  DWORD size = static_cast<DWORD>(capacity);
  LONG result =
      RegQueryValueExA(systemKey(key), name.c_str(), nullptr, &systemType, reinterpret_cast<BYTE*>(data.data()), &size);
  data.resize(result == ERROR_SUCCESS ? size : 0);
  type = static_cast<ValueType>(systemType);
  return portStatus(result);
}

Status Registry::setValue(KeyHandle key, const std::string& name, ValueType type, const std::string& data) {
  return portStatus(RegSetValueExA(systemKey(key), name.c_str(), 0, static_cast<DWORD>(type),
                                   reinterpret_cast<const BYTE*>(data.c_str()), static_cast<DWORD>(data.size())));
}

Status Registry::deleteValue(KeyHandle key, const std::string& name) {
  return portStatus(RegDeleteValueA(systemKey(key), name.c_str()));
}

// The Windows 95 family would delete the sub-keys too.
Status Registry::deleteKey(RegistryRoot root, const std::string& path) {
  if (hasSubKeys(rootKey(root), path)) return status::AccessDenied;
  return portStatus(RegDeleteKeyA(rootKey(root), path.c_str()));
}

Status Registry::enumerateKey(KeyHandle key, std::uint32_t index, std::size_t capacity, std::string& name) {
  name.assign(capacity, '\0');
  DWORD length = static_cast<DWORD>(capacity);
  LONG result = RegEnumKeyExA(systemKey(key), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
  name.resize(result == ERROR_SUCCESS ? length : 0);
  return portStatus(result);
}

Status Registry::enumerateValue(KeyHandle key, std::uint32_t index, std::size_t capacity, std::string& name) {
  name.assign(capacity, '\0');
  DWORD length = static_cast<DWORD>(capacity);
  LONG result = RegEnumValueA(systemKey(key), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
  name.resize(result == ERROR_SUCCESS ? length : 0);
  return portStatus(result);
}

void Registry::closeKey(KeyHandle key) {
  if (key.value != 0) RegCloseKey(systemKey(key));
}

}  // namespace win32
