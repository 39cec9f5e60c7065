// The program's only way into the registry. A key is a root and a path below it; texts are at most 1023 characters.
// Source: the ANSI registry functions of the system. All failures raise errors of the block 6160, but where it says
// otherwise; "not there" is no failure for the operations that say so.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/run.h"
#include "platform/registry.h"

namespace modRegistry {

using platform::RegistryRoot;
using platform::ValueType;

/// Lists the sub-keys of a key and returns their count. `keys` holds one empty name when there are none. Raises 6161.
std::int16_t RegListKeys(Run& run, const std::string& keyPath, std::vector<std::string>& keys,
                         RegistryRoot root = RegistryRoot::LocalMachine);

/// Creates a key with all its levels, always under HKEY_LOCAL_MACHINE. Returns 0; raises 6165.
std::int32_t RegCreate(Run& run, const std::string& keyPath);

/// A value as text; "" when there is no such value or it holds 1024 characters and more. Raises 6161 when the key
/// cannot be opened.
std::string RegRead(Run& run, const std::string& keyPath, const std::string& valueName,
                    RegistryRoot root = RegistryRoot::LocalMachine);

/// Writes a value, creating its key when that is not there, and returns how many values were written (0 or 1). A blank
/// value is written as an empty text with `keepEmpty`, and otherwise deletes the value. Types other than Text, Binary
/// and Number write nothing. Never raises: failures are logged with the source "RegWrite".
std::int16_t RegWrite(Run& run, const std::string& keyPath, const std::string& valueName, const std::string& value,
                      RegistryRoot root = RegistryRoot::LocalMachine, ValueType type = ValueType::Text,
                      bool keepEmpty = true);

/// Deletes a key with everything below it and returns the status of that. Raises 6166 when it cannot be opened.
std::int16_t RegDelete(Run& run, const std::string& keyPath, RegistryRoot root = RegistryRoot::LocalMachine);

/// A 32-bit number and the status of the query: 0 when it was read. A failure is logged.
std::int16_t DWORDValueGet(Run& run, const std::string& keyPath, const std::string& valueName, std::int32_t& number,
                           RegistryRoot root = RegistryRoot::LocalMachine);

/// True when the key (with an empty value name) or the value is there. Raises 6162 when that cannot be told.
bool RegKeyExists(Run& run, const std::string& keyPath, const std::string& valueName,
                  RegistryRoot root = RegistryRoot::LocalMachine, ValueType type = ValueType::Text);

/// Lists the value names of a key; as RegListKeys.
std::int16_t RegListValues(Run& run, const std::string& keyPath, std::vector<std::string>& values,
                           RegistryRoot root = RegistryRoot::LocalMachine);

/// Longest name of a key or value, and longest text, that can be read back.
inline constexpr std::size_t LongestName = 254;
inline constexpr std::size_t LongestText = 1023;

// What procedures mostly need: a missing key is an empty value, and is nothing to delete.

/// RegRead, but "" for a key that is not there.
std::string ReadOrEmpty(Run& run, const std::string& keyPath, const std::string& valueName);
/// The value in either form, text or number; 0 when there is none or it is no number.
double ReadNumber(Run& run, const std::string& keyPath, const std::string& valueName);
/// The names without the one empty name of an empty list; none for a key that is not there.
std::vector<std::string> SubKeys(Run& run, const std::string& keyPath);
std::vector<std::string> ValueNames(Run& run, const std::string& keyPath);
void WriteNumber(Run& run, const std::string& keyPath, const std::string& valueName, std::int32_t number);
/// RegWrite of a text that a later step reads. Raises 6087, with this source, when the write is refused.
void WriteOrRaise(Run& run, const std::string& keyPath, const std::string& valueName, const std::string& text,
                  const std::string& source, RegistryRoot root = RegistryRoot::LocalMachine);
/// The same, but the refusal is logged and gives false.
bool WriteOrTell(Run& run, const std::string& keyPath, const std::string& valueName, const std::string& text,
                 const std::string& source, RegistryRoot root = RegistryRoot::LocalMachine);
/// Deletes a key with everything below it, if it is there. What could not be deleted is a warning in the log.
void DeleteIfThere(Run& run, const std::string& keyPath);
/// Removes one value, if it is there.
void RemoveValue(Run& run, const std::string& keyPath, const std::string& valueName);

}  // namespace modRegistry
