// The text form of declaration files: sections `[kind argument]` with lines `key=value`; `;` begins a comment line.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace simulated {

struct Entry {
  std::string key;
  std::string value;
  int line = 0;
};

struct Section {
  std::string kind;
  std::string argument;
  std::vector<Entry> entries;
  int line = 0;
};

/// Raises std::runtime_error that names the file, the line and the remedy.
[[noreturn]] void RefuseLine(const std::string& file, int line, const std::string& text);

std::vector<Section> ParseSections(const std::string& file, const std::string& text);

/// What a section's keys mean.
using Keys = std::map<std::string, std::function<void(const std::string& value)>>;

/// Gives every entry to its key. An unknown key, or what a key's function raises, is refused with its line.
void Assign(const std::string& file, const Section& section, const Keys& keys);

bool ParseYes(const std::string& value);
/// A whole number within these bounds.
long long ParseCount(const std::string& value, long long least, long long most);
/// Splits at the separator into exactly so many parts, trimmed; raises std::runtime_error that shows `form`.
std::vector<std::string> ParseParts(const std::string& value, char separator, std::size_t count, const char* form);

}  // namespace simulated
