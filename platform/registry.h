// Port: the registry (source: the ANSI registry functions of advapi32).
#pragma once

#include <cstdint>
#include <string>

#include "platform/status.h"

namespace platform {

enum class RegistryRoot { CurrentUser, LocalMachine };

/// What an open key may be used for. Each adapter knows the system's rights behind these.
enum class KeyAccess {
  SetValue,  ///< set and delete values, nothing else
  Write,     ///< SetValue, and create sub-keys
  Read,      ///< query values, enumerate sub-keys and values
  Plain,     ///< whatever the caller may have (the plain open)
};

/// Types of a value, as the system numbers them. Other numbers occur on real machines and are passed through.
enum class ValueType : std::uint32_t { Text = 1, ExpandableText = 2, Binary = 3, Number = 4 };

/// An open key; 0 is none. The number means something to the adapter only.
struct KeyHandle {
  std::uintptr_t value = 0;

  bool operator==(const KeyHandle&) const = default;
};

/// Every method returns the system's status. A missing key or value is FileNotFound, a malformed path BadKey; a key
/// that was opened without the right for an operation AccessDenied. Key paths have no leading and no trailing
/// backslash; "" names the root itself. Names ignore letter case.
class RegistryReader {
 public:
  virtual ~RegistryReader() = default;

  /// `key` is none after a failure.
  virtual Status openKey(RegistryRoot root, const std::string& path, KeyAccess access, KeyHandle& key) = 0;

  /// `data` gets all bytes as stored, a text's terminating zero included when it has one; it is empty after a failure.
  virtual Status queryValue(KeyHandle key, const std::string& name, ValueType& type, std::string& data) = 0;

  /// The index-th sub-key's name, whole. NoMoreItems behind the last; `name` is empty then, as after any failure.
  virtual Status enumerateKey(KeyHandle key, std::uint32_t index, std::string& name) = 0;

  /// The index-th value's name; as enumerateKey. No order is promised.
  virtual Status enumerateValue(KeyHandle key, std::uint32_t index, std::string& name) = 0;

  /// None is ignored.
  virtual void closeKey(KeyHandle key) = 0;
};

class Registry : public RegistryReader {
 public:
  /// Creates the key with all missing levels (non-volatile), or opens it when it is there. `key` is none after a
  /// failure.
  virtual Status createKey(RegistryRoot root, const std::string& path, KeyAccess access, KeyHandle& key) = 0;

  /// Writes `data` as it stands. The byte behind a text is zero in memory, so that the system stores a text given
  /// without its terminator in terminated form.
  virtual Status setValue(KeyHandle key, const std::string& name, ValueType type, const std::string& data) = 0;

  virtual Status deleteValue(KeyHandle key, const std::string& name) = 0;

  /// Deletes one key; a key with sub-keys is refused with AccessDenied (as the NT family does).
  virtual Status deleteKey(RegistryRoot root, const std::string& path) = 0;
};

}  // namespace platform
