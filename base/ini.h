// Reads the program's ini files (application, product and component ini): lines of key=value in sections, comment lines
// beginning with ";" or "rem". Every call loads the file anew, so that a changed file is seen at once. Read only.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/app_log.h"
#include "base/refusals.h"
#include "platform/files.h"

namespace assistant::modINI {

/// Whether a key that is not there is told in the log.
enum class Missing { IsLogged, IsFine };

/// One ini file, from which values are read.
struct IniFile {
  platform::FileReader& files;
  clsAppLog& log;
  std::string path;
  /// Where a run takes note that the file is there and could not be read: no default is what it says. Null where
  /// somebody else sees to that.
  Refusals* refusals = nullptr;
};

/// The meaningful lines of one file, counted from 1, as they were read. One empty element stands before every section
/// header.
class IniLines {
 public:
  /// Takes the file's bytes. Raises "Overflow" when there are more lines than a 16-bit count holds.
  explicit IniLines(std::string bytes);

  /// Valid until the lines are moved.
  std::string_view at(std::size_t index) const;
  /// Its first character; none for an empty line.
  std::string_view front(std::size_t index) const { return std::string_view(bytes_).substr(starts_[index - 1], 1); }
  std::size_t count() const { return starts_.size(); }
  void addEmpty() { starts_.push_back(bytes_.size()); }

 private:
  std::string bytes_;
  // Of each line, in the bytes. An empty one starts at their end. Where a line ends is seen again when it is wanted:
  // of nearly all only the first character is.
  std::vector<std::size_t> starts_;
};

/// A value, and the number of the failure for which the default stands in its place; 0 when it was read.
struct IniValue {
  std::string text;
  int failure = 0;
};

/// Value of a key, without the blanks around it; an empty value is "". On any failure (names with "[", "]" or "=", a
/// file that cannot be read, no such section or key) it is `defaultValue`, and unless that is fine two entries tell it
/// in the log.
IniValue ReadIniValue(const IniFile& ini, const std::string& section, const std::string& key,
                      const std::string& defaultValue, Missing missing);
/// Its text, which is all that nearly every caller wants.
std::string GetIniString(const IniFile& ini, const std::string& section, const std::string& key,
                         const std::string& defaultValue, Missing missing = Missing::IsFine);

/// A line of a section that has a key.
struct IniEntry {
  std::string key;
  std::string value;  ///< without the blanks around it
};

/// The lines of a section that have a key. A failure is logged and gives none.
std::vector<IniEntry> GetIniEntries(const IniFile& ini, const std::string& section);
/// Their keys.
std::vector<std::string> GetIniKeys(const IniFile& ini, const std::string& section);
/// The lines of a section as they stand, but those of blanks only. A failure is logged and gives none.
std::vector<std::string> GetIniLines(const IniFile& ini, const std::string& section);

/// True when the file has the section. A failure is logged; the result is false.
bool IsValidIniSection(const IniFile& ini, const std::string& section);

/// Loads a file; a mark of UTF-8 at its start is passed over. Raises 6122 with the reason, which is told as well where
/// the file is there and its `refusals` take note of that.
IniLines OpenIniFile(const IniFile& ini);

/// True when the file can be loaded; nothing is told.
bool IsReadable(const IniFile& ini);

/// Searches behind `index` for a line that begins with `text` (letter case ignored); with `stopAtSection` only up to
/// the next section. `index` becomes the line found, or the last line examined that is not empty.
bool FindLine(IniLines& lines, std::size_t& index, std::string_view text, bool stopAtSection);

/// True for a line that begins a section.
bool IsHeader(std::string_view line);
/// True for a line that is passed over: empty, or a comment.
bool IsDropped(std::string_view line);

/// True when a name holds none of "[", "]" and "=".
bool ValidStr(const std::string& name);

std::size_t LineCount(const IniLines& lines);

}  // namespace assistant::modINI
