// The .reg text form (REGEDIT4). A file is a sequence of changes: reading it means carrying them out in order, so that
// appending a line is as good as rewriting the file.
#pragma once

#include <cstdint>
#include <string>

namespace simulated {

struct RegistryValue {
  std::string name;
  std::uint32_t type = 1;
  std::string data;  ///< bytes as stored, a text's terminating zero included
};

struct RegLine {
  enum class Kind { Nothing, Key, DeletedKey, Value, DeletedValue, Malformed };
  Kind kind = Kind::Nothing;
  std::string key;      ///< full path with the root's long name
  RegistryValue value;  ///< its name alone for a deleted value
};

inline constexpr const char* RegFileHeader = "REGEDIT4";

std::string KeyLine(const std::string& fullPath);
std::string DeletedKeyLine(const std::string& fullPath);
/// Plain texts are quoted, numbers are dword:, everything else (a text with line breaks too) is hex: or hex(type):.
std::string ValueLine(const RegistryValue& value);
std::string DeletedValueLine(const std::string& name);

/// One logical line: lines that end in a backslash have been joined to the next one.
RegLine ParseRegLine(const std::string& line);

/// "text", dword:, hex: or hex(n): into type and bytes; false when it is none of them.
bool ParseRegData(const std::string& text, RegistryValue& value);

}  // namespace simulated
