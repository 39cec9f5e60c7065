// Port: the registry (source: the ANSI registry functions of advapi32).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/status.h"

namespace platform {

enum class RegistryRoot : std::uint32_t { CurrentUser = 0x80000001, LocalMachine = 0x80000002 };

/// Access rights of an open key, as bits of the system.
enum class KeyAccess : std::uint32_t {
  SetValue = 0x0002,
  Write = 0x20006,
  Read = 0x20019,
  Plain = 0x2000000,  ///< whatever the caller may have (the plain open)
};

/// Types of a value, as the system numbers them. Other numbers occur on real machines and are passed through.
enum class ValueType : std::uint32_t { Text = 1, ExpandableText = 2, Binary = 3, Number = 4 };

/// An open key; 0 is none. The number means something to the adapter only.
struct KeyHandle {
  std::uintptr_t value = 0;
};

/// Every method returns the system's status number. A missing key or value is FileNotFound, a malformed path BadKey.
/// Key paths have no leading and no trailing backslash; "" names the root itself. Names ignore letter case.
class Registry {
 public:
  virtual ~Registry() = default;

  virtual Status openKey(RegistryRoot root, const std::string& path, KeyAccess access, KeyHandle& key) = 0;

  /// Creates the key with all missing levels (non-volatile), or opens it when it is there.
  virtual Status createKey(RegistryRoot root, const std::string& path, KeyAccess access, KeyHandle& key) = 0;

  /// Reads a value into a buffer of `capacity` bytes: `data` gets the bytes as stored, a text's terminating zero
  /// included when it has one. MoreData when they do not fit; `data` is empty then, as after any failure.
  virtual Status queryValue(KeyHandle key, const std::string& name, std::size_t capacity, ValueType& type,
                            std::string& data) = 0;

  /// Writes `data` as it stands. The byte behind a text is zero in memory, so that the system stores a text given
  /// without its terminator in terminated form.
  virtual Status setValue(KeyHandle key, const std::string& name, ValueType type, const std::string& data) = 0;

  virtual Status deleteValue(KeyHandle key, const std::string& name) = 0;

  /// Deletes one key; a key with sub-keys is refused with AccessDenied (as the NT family does).
  virtual Status deleteKey(RegistryRoot root, const std::string& path) = 0;

  /// The index-th sub-key's name, for a buffer of `capacity` characters. NoMoreItems behind the last.
  virtual Status enumerateKey(KeyHandle key, std::uint32_t index, std::size_t capacity, std::string& name) = 0;

  /// The index-th value's name. No order is promised. NoMoreItems behind the last.
  virtual Status enumerateValue(KeyHandle key, std::uint32_t index, std::size_t capacity, std::string& name) = 0;

  virtual void closeKey(KeyHandle key) = 0;
};

}  // namespace platform
