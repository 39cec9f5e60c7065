#include "platform/simulated/section_file.h"

#include <cerrno>
#include <cstdlib>
#include <stdexcept>

#include "platform/simulated/text.h"

namespace simulated {

void RefuseLine(const std::string& file, int line, const std::string& text) {
  Refuse(file + ":" + std::to_string(line) + ": " + text);
}

std::vector<Section> ParseSections(const std::string& file, const std::string& text) {
  std::vector<Section> sections;
  int number = 0;
  for (const std::string& raw : Split(text, '\n')) {
    ++number;
    const std::string line = Trim(raw);
    if (line.find('\0') != std::string::npos) RefuseLine(file, number, "a zero byte: write text");
    if (line.empty() || line[0] == ';') continue;
    if (line[0] == '[') {
      if (line.back() != ']') RefuseLine(file, number, "'" + line + "': end the section's name with ]");
      const std::string name = Trim(line.substr(1, line.size() - 2));
      const std::size_t blank = name.find(' ');
      const std::string argument = blank == std::string::npos ? "" : Trim(name.substr(blank));
      sections.push_back({Lower(name.substr(0, blank)), argument, {}, number});
      continue;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos) RefuseLine(file, number, "'" + line + "': write key=value");
    if (sections.empty()) RefuseLine(file, number, "'" + line + "': begin a section, such as [machine], above it");
    sections.back().entries.push_back({Trim(line.substr(0, equals)), Trim(line.substr(equals + 1)), number});
  }
  return sections;
}

void Assign(const std::string& file, const Section& section, const Keys& keys) {
  for (const Entry& entry : section.entries) {
    const auto found = keys.find(Lower(entry.key));
    if (found == keys.end()) {
      std::string names;
      for (const auto& [name, use] : keys) names += (names.empty() ? "" : ", ") + name;
      RefuseLine(file, entry.line, "'" + entry.key + "' is no key of [" + section.kind + "]; it has: " + names);
    }
    try {
      found->second(entry.value);
    } catch (const std::runtime_error& refused) {
      RefuseLine(file, entry.line, refused.what());
    }
  }
}

bool ParseYes(const std::string& value) {
  if (SameText(value, "yes")) return true;
  if (SameText(value, "no")) return false;
  Refuse("'" + value + "': write yes or no");
}

long long ParseCount(const std::string& value, long long least, long long most) {
  char* end = nullptr;
  errno = 0;
  const long long number = std::strtoll(value.c_str(), &end, 10);
  if (value.empty() || *end != '\0' || errno != 0) Refuse("'" + value + "': write a whole number");
  if (number < least || number > most)
    Refuse("'" + value + "': write a number from " + std::to_string(least) + " to " + std::to_string(most));
  return number;
}

std::vector<std::string> ParseParts(const std::string& value, char separator, std::size_t count, const char* form) {
  std::vector<std::string> parts = Split(value, separator);
  if (parts.size() != count) Refuse("'" + value + "': write it as " + form);
  for (std::string& part : parts) part = Trim(part);
  return parts;
}

}  // namespace simulated
