// A text file of the media as it is written: every line with its number, the sections and keys by the program's own
// reading, and what is wrong with its bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qxia::check {

/// A line of a section that is no comment.
struct IniEntry {
  int line = 0;
  std::string key;    ///< what stands before the first "="; the whole line where there is none
  std::string value;  ///< without the blanks around it
  std::string text;   ///< the line as it stands
  bool hasEquals = false;
};

struct IniSection {
  int line = 0;  ///< of its header; 0 for the lines before the first header
  std::string name;
  std::vector<IniEntry> entries;
};

class SourceIni {
 public:
  enum class State { Read, Utf16, Unreadable };

  /// `shown` is the path as findings tell it.
  SourceIni(std::string shown, std::string bytes);
  /// A file that cannot be read; `reason` is the host's.
  static SourceIni unreadable(std::string shown, std::string reason);

  const std::string& shown() const { return shown_; }
  State state() const { return state_; }
  const std::string& reason() const { return reason_; }
  bool hasUtf8Mark() const { return hasUtf8Mark_; }
  /// The lines without their line feed and the carriage return before it; the first has number 1.
  const std::vector<std::string>& lines() const { return lines_; }
  const std::vector<IniSection>& sections() const { return sections_; }

  /// The section of that name that is read, which is the first; null without one.
  const IniSection* section(const std::string& name) const;
  /// The key that is read, which is the first of its name in that section; null without one.
  const IniEntry* find(const std::string& section, const std::string& key) const;
  /// The key's value; `otherwise` where there is no such key.
  std::string value(const std::string& section, const std::string& key, const std::string& otherwise = "") const;
  /// The line that has to change for a key: its own, else the section's header, else the first.
  int lineOf(const std::string& section, const std::string& key) const;

 private:
  SourceIni() = default;
  void readSections();

  std::string shown_;
  State state_ = State::Read;
  std::string reason_;
  bool hasUtf8Mark_ = false;
  std::vector<std::string> lines_;
  std::vector<IniSection> sections_;
};

/// The first of a section's keys with that name; null without one.
const IniEntry* FindEntry(const IniSection& section, const std::string& key);

}  // namespace qxia::check
