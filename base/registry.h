// The program's only way into the registry. A key is a root and a path below it; texts are at most 1023 characters.
// Source: the ANSI registry functions of the system. All failures raise errors of the block 6160, but where it says
// otherwise; "not there" is no failure for the operations that say so. What only reads takes the reading port.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "base/procedure.h"
#include "base/services.h"
#include "platform/registry.h"

namespace assistant::modRegistry {

using platform::RegistryReader;
using platform::RegistryRoot;
using platform::ValueType;

/// True for a failure that this module raised: something of the registry could not be read or written.
bool IsOwnFailure(const std::exception& failure);

/// Names of a key's sub-keys; none for a key without any. Raises 6161 when the key cannot be opened, or its list breaks
/// off.
std::vector<std::string> RegListKeys(RegistryReader& registry, const std::string& keyPath,
                                     RegistryRoot root = RegistryRoot::LocalMachine);
/// Names of a key's values; as RegListKeys.
std::vector<std::string> RegListValues(RegistryReader& registry, const std::string& keyPath,
                                       RegistryRoot root = RegistryRoot::LocalMachine);

/// A value as text; "" when there is no such value or it holds 1024 characters and more. Raises 6161 when it cannot be
/// read otherwise.
std::string RegRead(RegistryReader& registry, const std::string& keyPath, const std::string& valueName,
                    RegistryRoot root = RegistryRoot::LocalMachine);

/// True when the key (with an empty value name) or the value is there. Raises 6162 when that cannot be told.
bool RegKeyExists(RegistryReader& registry, const std::string& keyPath, const std::string& valueName,
                  RegistryRoot root = RegistryRoot::LocalMachine, ValueType type = ValueType::Text);

/// A 32-bit number as read, and the system's status of the query.
struct ReadNumberValue {
  platform::Status status;
  std::int32_t number = 0;
};
/// A failure is logged.
ReadNumberValue DWORDValueGet(const Services& services, const std::string& keyPath, const std::string& valueName,
                              RegistryRoot root = RegistryRoot::LocalMachine);

/// Creates a key with all its levels, always under HKEY_LOCAL_MACHINE. Raises 6165.
void RegCreate(platform::Registry& registry, const std::string& keyPath);

/// A value as it is written: mostly a text.
struct NewValue {
  NewValue(std::string text, ValueType type = ValueType::Text, RegistryRoot root = RegistryRoot::LocalMachine)
      : text(std::move(text)), type(type), root(root) {}
  NewValue(const char* text) : NewValue(std::string(text)) {}

  std::string text;
  ValueType type;
  RegistryRoot root;
};

/// Writes a value, creating its key when that is not there; true when it was written. A blank value is written as an
/// empty text. Types other than Text, Binary and Number write nothing. Never raises: what could not be written is
/// logged with the source "RegWrite" and counts as refused.
bool RegWrite(const Services& services, const std::string& keyPath, const std::string& valueName,
              const NewValue& value);

/// Removes one value; true when it was there and is gone. What could not be removed is logged with the source
/// "RemoveValue" (6087) and counts as refused.
bool RemoveValue(const Services& services, const std::string& keyPath, const std::string& valueName);

/// Deletes a key with everything below it and returns the status of that. Raises 6166 when it cannot be opened.
platform::Status RegDelete(platform::Registry& registry, const std::string& keyPath,
                           RegistryRoot root = RegistryRoot::LocalMachine);

/// Longest name of a key or value, and longest text, that can be read back.
inline constexpr std::size_t LongestName = 254;
inline constexpr std::size_t LongestText = 1023;

/// Copies a key with everything below it, value by value as they are stored, onto a key that need not be there. Raises
/// 6161 for what cannot be read, and 6087 as a failure of `here` for what is refused.
void RegCopy(const Services& services, const Procedure& here, const std::string& from, const std::string& to);

// What procedures mostly need: a missing key is an empty value, and is nothing to delete.

/// RegRead, but "" for a key that is not there.
std::string ReadOrEmpty(RegistryReader& registry, const std::string& keyPath, const std::string& valueName);
/// The value in either form, text or number; 0 when there is none or it is no number. Raises 6161.
double ReadNumber(RegistryReader& registry, const std::string& keyPath, const std::string& valueName);
/// The names; none for a key that is not there.
std::vector<std::string> SubKeys(RegistryReader& registry, const std::string& keyPath);
std::vector<std::string> ValueNames(RegistryReader& registry, const std::string& keyPath);
void WriteNumber(const Services& services, const std::string& keyPath, const std::string& valueName,
                 std::int32_t number);
/// The same for a value that a later step reads. Raises 6087, as a failure of `here`, when the write is refused.
void WriteOrRaise(const Services& services, const Procedure& here, const std::string& keyPath,
                  const std::string& valueName, const NewValue& value);
/// The same, but the refusal is told and gives false.
bool WriteOrTell(const Services& services, const Procedure& here, const std::string& keyPath,
                 const std::string& valueName, const NewValue& value);
/// Deletes a key with everything below it, if it is there. What could not be deleted is a warning in the log.
void DeleteIfThere(const Services& services, const std::string& keyPath);

}  // namespace assistant::modRegistry
