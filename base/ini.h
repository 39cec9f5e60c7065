// Reads the program's ini files (application, product and component ini): lines of key=value in sections, comment lines
// beginning with ";" or "rem". Every call loads the file anew, so that a changed file is seen at once. Read only.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/run.h"

namespace modINI {

/// The meaningful lines of one file, counted from 1, as they were read. One empty element stands before every section
/// header.
class IniLines {
 public:
  /// Takes the file's bytes. Raises "Overflow" when there are more lines than a 16-bit count holds.
  explicit IniLines(std::string bytes);

  std::string_view at(std::size_t index) const { return lines_[index - 1]; }
  std::size_t count() const { return lines_.size(); }
  void addEmpty() { lines_.emplace_back(); }

 private:
  void Keep(std::string_view line);

  std::unique_ptr<const std::string> bytes_;  // on the heap, so that the views survive a move
  std::vector<std::string_view> lines_;
};

/// Value of a key, without the blanks around it; an empty value is "". On any failure (names with "[", "]" or "=", a
/// file that cannot be read, no such section or key) the result is `defaultValue`, the number is kept in
/// run.lastIniError, and unless `silent` two entries tell it in the log.
std::string GetIniString(Run& run, const std::string& section, const std::string& key, const std::string& defaultValue,
                         const std::string& iniFile, bool silent);

/// Lists a section: the keys of its lines (`keysOnly`), or its lines as they stand. A failure is logged and leaves
/// `keys` empty.
void GetIniKeys(Run& run, std::vector<std::string>& keys, const std::string& section, const std::string& iniFile,
                bool keysOnly);

/// True when the file has the section. A failure is logged; the result is false.
bool IsValidIniSection(Run& run, const std::string& section, const std::string& iniFile);

/// Loads a file. Raises 6122 with the reason.
IniLines OpenIniFile(Run& run, const std::string& iniFile);

/// Searches behind `index` for a line that begins with `text` (letter case ignored); with `stopAtSection` only up to
/// the next section. `index` becomes the line found, or the last line examined that is not empty.
bool FindLine(IniLines& lines, std::size_t& index, std::string_view text, bool stopAtSection);

/// True when a name holds none of "[", "]" and "=".
bool ValidStr(const std::string& name);

std::size_t LineCount(const IniLines& lines);

}  // namespace modINI
