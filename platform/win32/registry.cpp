#include "platform/win32/registry.h"

#include <algorithm>

#include "platform/win32/owner.h"

namespace win32 {

using platform::KeyAccess;
using platform::KeyHandle;
using platform::RegistryRoot;
using platform::Status;
using platform::ValueType;

namespace {

// Nearly everything fits these at once; what does not is asked for again with more room.
constexpr DWORD UsualDataSize = 1024;
constexpr DWORD UsualNameSize = 256;

HKEY RootKey(RegistryRoot root) {
  return root == RegistryRoot::CurrentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

REGSAM SystemRights(KeyAccess access) {
  switch (access) {
    case KeyAccess::SetValue:
      return KEY_SET_VALUE;
    case KeyAccess::Write:
      return KEY_WRITE;
    case KeyAccess::Read:
      return KEY_READ;
    case KeyAccess::Plain:
      break;
  }
  return MAXIMUM_ALLOWED;
}

HKEY SystemKey(KeyHandle key) {
  return reinterpret_cast<HKEY>(key.value);
}

// The NT family tells a malformed path by a number of its own.
Status PortStatus(LONG result) {
  return result == ERROR_BAD_PATHNAME ? Status::BadKey : static_cast<Status>(result);
}

/// The key that was opened becomes the caller's.
Status HandOver(LONG result, OwnedSystemKey& opened, KeyHandle& key) {
  key.value = result == ERROR_SUCCESS ? reinterpret_cast<std::uintptr_t>(opened.release()) : 0;
  return PortStatus(result);
}

bool HasSubKeys(HKEY root, const std::string& path) {
  OwnedSystemKey key;
  if (RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, key.receive()) != ERROR_SUCCESS) return false;
  char name[UsualNameSize];
  DWORD length = sizeof name;
  return RegEnumKeyExA(key.get(), 0, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

/// A whole name, by a call that says when its room is too small but not how much it needs.
template <class Call>
Status ReadName(std::string& name, Call call) {
  LONG result = ERROR_MORE_DATA;
  DWORD length = 0;
  for (DWORD size = UsualNameSize; result == ERROR_MORE_DATA; size *= 2) {
    name.assign(size, '\0');
    length = size;
    result = call(name.data(), &length);
  }
  name.resize(result == ERROR_SUCCESS ? length : 0);
  return PortStatus(result);
}

}  // namespace

Status RegistryAdapter::openKey(RegistryRoot root, const std::string& path, KeyAccess access, KeyHandle& key) {
  OwnedSystemKey opened;
  LONG result = RegOpenKeyExA(RootKey(root), path.c_str(), 0, SystemRights(access), opened.receive());
  return HandOver(result, opened, key);
}

Status RegistryAdapter::createKey(RegistryRoot root, const std::string& path, KeyAccess access, KeyHandle& key) {
  OwnedSystemKey opened;
  LONG result = RegCreateKeyExA(RootKey(root), path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, SystemRights(access),
                                nullptr, opened.receive(), nullptr);
  return HandOver(result, opened, key);
}

Status RegistryAdapter::queryValue(KeyHandle key, const std::string& name, ValueType& type, std::string& data) {
  LONG result = ERROR_MORE_DATA;
  DWORD systemType = 0;
  DWORD needed = 0;
  for (DWORD size = UsualDataSize; result == ERROR_MORE_DATA; size = std::max(needed, size * 2)) {
    data.assign(size, '\0');
    needed = size;
    result = RegQueryValueExA(SystemKey(key), name.c_str(), nullptr, &systemType, reinterpret_cast<BYTE*>(data.data()),
                              &needed);
  }
  data.resize(result == ERROR_SUCCESS ? needed : 0);
  type = static_cast<ValueType>(systemType);
  return PortStatus(result);
}

Status RegistryAdapter::enumerateKey(KeyHandle key, std::uint32_t index, std::string& name) {
  return ReadName(name, [&](char* room, DWORD* length) {
    return RegEnumKeyExA(SystemKey(key), index, room, length, nullptr, nullptr, nullptr, nullptr);
  });
}

Status RegistryAdapter::enumerateValue(KeyHandle key, std::uint32_t index, std::string& name) {
  return ReadName(name, [&](char* room, DWORD* length) {
    return RegEnumValueA(SystemKey(key), index, room, length, nullptr, nullptr, nullptr, nullptr);
  });
}

void RegistryAdapter::closeKey(KeyHandle key) {
  OwnedSystemKey closing(SystemKey(key));
}

Status RegistryAdapter::setValue(KeyHandle key, const std::string& name, ValueType type, const std::string& data) {
  return PortStatus(RegSetValueExA(SystemKey(key), name.c_str(), 0, static_cast<DWORD>(type),
                                   reinterpret_cast<const BYTE*>(data.c_str()), static_cast<DWORD>(data.size())));
}

Status RegistryAdapter::deleteValue(KeyHandle key, const std::string& name) {
  return PortStatus(RegDeleteValueA(SystemKey(key), name.c_str()));
}

// The Windows 95 family would delete the sub-keys too.
Status RegistryAdapter::deleteKey(RegistryRoot root, const std::string& path) {
  if (HasSubKeys(RootKey(root), path)) return Status::AccessDenied;
  return PortStatus(RegDeleteKeyA(RootKey(root), path.c_str()));
}

}  // namespace win32
