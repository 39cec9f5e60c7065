#include "platform/simulated/reg_file.h"

#include <cstdio>
#include <cstdlib>

#include "platform/simulated/text.h"

namespace simulated {
namespace {

constexpr std::uint32_t Text = 1;
constexpr std::uint32_t Binary = 3;
constexpr std::uint32_t Number = 4;

std::string Quoted(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + "\"";
}

/// Reads a quoted text from `position` on, which moves behind the closing quote; false when there is none.
bool Unquote(const std::string& line, std::size_t& position, std::string& text) {
  if (position >= line.size() || line[position] != '"') return false;
  text.clear();
  for (++position; position < line.size(); ++position) {
    if (line[position] == '"') return ++position, true;
    if (line[position] == '\\' && position + 1 < line.size()) ++position;
    text += line[position];
  }
  return false;
}

bool IsPlainText(const RegistryValue& value) {
  if (value.type != Text || value.data.empty() || value.data.back() != '\0') return false;
  const std::string text = value.data.substr(0, value.data.size() - 1);
  return text.find_first_of(std::string("\0\r\n", 3)) == std::string::npos;
}

std::string Hex(const std::string& data) {
  std::string out;
  for (const char c : data) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
    out += (out.empty() ? "" : ",") + std::string(digits);
  }
  return out;
}

bool ParseHexBytes(const std::string& text, std::string& data) {
  data.clear();
  if (Trim(text).empty()) return true;
  for (const std::string& part : Split(text, ',')) {
    const std::string digits = Trim(part);
    char* end = nullptr;
    const unsigned long byte = std::strtoul(digits.c_str(), &end, 16);
    if (digits.empty() || *end != '\0' || byte > 0xff) return false;
    data += static_cast<char>(byte);
  }
  return true;
}

std::string NumberBytes(unsigned long number) {
  std::string data;
  for (int shift = 0; shift < 32; shift += 8) data += static_cast<char>(number >> shift & 0xff);
  return data;
}

unsigned long NumberOf(const std::string& data) {
  unsigned long number = 0;
  for (int i = 3; i >= 0; --i) number = number << 8 | static_cast<unsigned char>(data[static_cast<std::size_t>(i)]);
  return number;
}

bool ParseDword(const std::string& text, RegistryValue& value) {
  char* end = nullptr;
  const unsigned long number = std::strtoul(text.c_str(), &end, 16);
  if (text.empty() || *end != '\0' || number > 0xffffffffUL) return false;
  value.type = Number;
  value.data = NumberBytes(number);
  return true;
}

bool ParseTypedHex(const std::string& text, RegistryValue& value) {
  if (StartsWithText(text, "hex:")) {
    value.type = Binary;
    return ParseHexBytes(text.substr(4), value.data);
  }
  const std::size_t close = text.find("):");
  if (!StartsWithText(text, "hex(") || close == std::string::npos) return false;
  char* end = nullptr;
  value.type = static_cast<std::uint32_t>(std::strtoul(text.c_str() + 4, &end, 16));
  return *end == ')' && ParseHexBytes(text.substr(close + 2), value.data);
}

RegLine ParseValueLine(const std::string& line) {
  RegLine parsed;
  parsed.kind = RegLine::Kind::Malformed;
  std::size_t position = 0;
  if (line[0] == '@') {
    position = 1;
  } else if (!Unquote(line, position, parsed.value.name)) {
    return parsed;
  }
  if (position >= line.size() || line[position] != '=') return parsed;
  const std::string data = line.substr(position + 1);
  if (data == "-") {
    parsed.kind = RegLine::Kind::DeletedValue;
  } else if (ParseRegData(data, parsed.value)) {
    parsed.kind = RegLine::Kind::Value;
  }
  return parsed;
}

}  // namespace

std::string KeyLine(const std::string& fullPath) {
  return "[" + fullPath + "]";
}

std::string DeletedKeyLine(const std::string& fullPath) {
  return "[-" + fullPath + "]";
}

std::string ValueLine(const RegistryValue& value) {
  const std::string name = (value.name.empty() ? "@" : Quoted(value.name)) + "=";
  if (IsPlainText(value)) return name + Quoted(value.data.substr(0, value.data.size() - 1));
  if (value.type == Number && value.data.size() == 4) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%08lx", NumberOf(value.data));
    return name + "dword:" + digits;
  }
  if (value.type == Binary) return name + "hex:" + Hex(value.data);
  char type[24];
  std::snprintf(type, sizeof type, "hex(%x):", static_cast<unsigned>(value.type));
  return name + type + Hex(value.data);
}

std::string DeletedValueLine(const std::string& name) {
  return (name.empty() ? "@" : Quoted(name)) + "=-";
}

RegLine ParseRegLine(const std::string& rawLine) {
  const std::string line = Trim(rawLine);
  RegLine parsed;
  if (line.empty() || line[0] == ';' || line == RegFileHeader) return parsed;
  const bool hasZero = line.find('\0') != std::string::npos;
  if (line[0] != '[' && !hasZero) return ParseValueLine(line);
  if (line.back() != ']' || hasZero) {
    parsed.kind = RegLine::Kind::Malformed;
    return parsed;
  }
  const bool deleted = line.size() > 1 && line[1] == '-';
  parsed.kind = deleted ? RegLine::Kind::DeletedKey : RegLine::Kind::Key;
  const std::size_t start = deleted ? 2 : 1;
  parsed.key = line.substr(start, line.size() - 1 - start);
  return parsed;
}

bool ParseRegData(const std::string& text, RegistryValue& value) {
  std::size_t position = 0;
  std::string plain;
  if (Unquote(text, position, plain) && position == text.size()) {
    value.type = Text;
    value.data = plain + '\0';
    return true;
  }
  if (StartsWithText(text, "dword:")) return ParseDword(text.substr(6), value);
  return ParseTypedHex(text, value);
}

}  // namespace simulated
