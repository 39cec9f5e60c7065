#include "platform/simulated/text.h"

#include <stdexcept>

namespace simulated {
namespace {

char LowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether the next byte belongs to the same character.
bool IsLead(char byte, bool japanese) {
  return japanese && IsJapaneseLeadByte(static_cast<unsigned char>(byte));
}

/// Where the next such separator stands, or npos.
std::size_t FindSeparator(std::string_view text, std::size_t from, char separator, bool japanese) {
  if (!japanese) return text.find(separator, from);
  for (; from < text.size(); ++from) {
    if (text[from] == separator) return from;
    if (IsLead(text[from], japanese)) ++from;
  }
  return std::string_view::npos;
}

}  // namespace

std::string Lower(std::string text, bool japanese) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    text[at] = LowerLetter(text[at]);
    if (IsLead(text[at], japanese)) ++at;
  }
  return text;
}

char UpperLetter(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

int CompareText(std::string_view a, std::string_view b, bool japanese) {
  const std::size_t common = a.size() < b.size() ? a.size() : b.size();
  bool isTrail = false;  // of both, which are the same up to here
  for (std::size_t i = 0; i < common; ++i) {
    const auto x = static_cast<unsigned char>(isTrail ? a[i] : LowerLetter(a[i]));
    const auto y = static_cast<unsigned char>(isTrail ? b[i] : LowerLetter(b[i]));
    if (x != y) return x < y ? -1 : 1;
    isTrail = !isTrail && IsLead(a[i], japanese);
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

bool SameText(std::string_view a, std::string_view b, bool japanese) {
  return a.size() == b.size() && CompareText(a, b, japanese) == 0;
}

bool StartsWithText(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && SameText(text.substr(0, start.size()), start);
}

bool EndsWithText(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && SameText(text.substr(text.size() - end.size()), end);
}

bool ContainsText(const std::string& text, const std::string& part) {
  return Lower(text).find(Lower(part)) != std::string::npos;
}

std::string Trim(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string_view UpToZero(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (std::size_t end = text.find(separator); end != std::string::npos; end = text.find(separator, start)) {
    parts.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  parts.push_back(text.substr(start));
  return parts;
}

std::vector<std::string> Split(const std::string& text, char separator, bool japanese) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (start != std::string::npos) parts.emplace_back(NextPart(text, start, separator, japanese));
  return parts;
}

std::string_view NextPart(std::string_view text, std::size_t& at, char separator, bool japanese) {
  const std::size_t end = FindSeparator(text, at, separator, japanese);
  const std::string_view part = text.substr(at, end - at);
  at = end == std::string_view::npos ? end : end + 1;
  return part;
}

bool IsJapaneseLeadByte(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

std::string WithoutTrailBytes(std::string text, bool japanese) {
  for (std::size_t at = 0; japanese && at + 1 < text.size(); ++at)
    if (IsLead(text[at], japanese)) text[++at] = 'x';
  return text;
}

void Refuse(const std::string& text) {
  throw std::runtime_error(text);
}

}  // namespace simulated
