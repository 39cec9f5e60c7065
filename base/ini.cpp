#include "base/ini.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "base/code_page.h"
#include "base/error_texts.h"
#include "base/procedure.h"
#include "base/text.h"

namespace assistant::modINI {
namespace {

constexpr int OverflowError = 6;

/// The count of lines is 16 bits wide.
constexpr std::size_t MostLines = std::numeric_limits<std::int16_t>::max();

[[noreturn]] void RaiseOverflow() {
  throw Error(OverflowError, "Overflow", "modINI.OpenIniFile");
}

/// Bytes of a short line, from which the number of lines is guessed.
constexpr std::size_t UsualLine = 24;

/// A text up to its first line end.
std::string_view FirstLine(std::string_view text) {
  const void* end = std::memchr(text.data(), '\n', text.size());
  return end == nullptr ? text : text.substr(0, static_cast<std::size_t>(static_cast<const char*>(end) - text.data()));
}

std::string_view WithoutReturn(std::string_view line) {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

/// False for nearly every line that does not begin with the text, letter case ignored: its first letter is another.
bool MayBeginWith(std::string_view line, std::string_view text) {
  constexpr int caseBit = 0x20;
  return !line.empty() && (line.front() | caseBit) == (text.front() | caseBit);
}

void RequireName(const std::string& name, int errorNumber) {
  if (!ValidStr(name)) throw modErrorBase::MakeError(errorNumber, {name}, "modINI");
}

/// The lines of a file and the header of the section in them.
struct OpenSection {
  IniLines lines;
  std::size_t header;
};

OpenSection FindSection(IniLines lines, const std::string& path, const std::string& section) {
  OpenSection found{std::move(lines), 0};
  if (!FindLine(found.lines, found.header, "[" + section + "]", false)) {
    throw modErrorBase::MakeError(6120, {section, path}, "modINI");
  }
  return found;
}

std::string ReadValue(const IniFile& ini, const std::string& section, const std::string& key) {
  RequireName(section, 6123);
  RequireName(key, 6124);
  OpenSection opened = FindSection(OpenIniFile(ini), ini.path, section);
  std::size_t index = opened.header;
  if (!FindLine(opened.lines, index, key + "=", true)) {
    throw modErrorBase::MakeError(6121, {key, section, ini.path}, "modINI");
  }
  const std::string_view line = opened.lines.at(index);
  return Trim(line.substr(line.find('=') + 1));
}

/// The lines of a section up to the next one, as they stand; a failure is logged and gives none.
std::vector<std::string> SectionLines(const IniFile& ini, const std::string& section) {
  const Procedure here(ini.log, "modINI.GetIniKeys");
  return here.guard([&] {
    RequireName(section, 6123);
    const OpenSection opened = FindSection(OpenIniFile(ini), ini.path, section);
    std::vector<std::string> lines;
    for (std::size_t i = opened.header + 1; i <= opened.lines.count() && !IsHeader(opened.lines.at(i)); ++i) {
      lines.emplace_back(opened.lines.at(i));
    }
    return lines;
  });
}

}  // namespace

IniLines::IniLines(std::string bytes) : bytes_(std::move(bytes)) {
  starts_.reserve(std::min(bytes_.size() / UsualLine, MostLines) + 2);
  const char* const begin = bytes_.data();
  const char* const end = begin + bytes_.size();
  for (const char* at = begin; at < end;) {
    const std::string_view line = FirstLine({at, static_cast<std::size_t>(end - at)});
    at += line.size() + 1;
    const std::string_view text = WithoutReturn(line);
    // A line is counted before it is looked at.
    if (starts_.size() + (IsHeader(text) ? 2 : 1) > MostLines) RaiseOverflow();
    if (IsDropped(text)) continue;
    if (IsHeader(text)) addEmpty();
    starts_.push_back(static_cast<std::size_t>(text.data() - begin));
  }
}

std::string_view IniLines::at(std::size_t index) const {
  return WithoutReturn(FirstLine(std::string_view(bytes_).substr(starts_[index - 1])));
}

IniValue ReadIniValue(const IniFile& ini, const std::string& section, const std::string& key,
                      const std::string& defaultValue, Missing missing) {
  try {
    return {ReadValue(ini, section, key)};
  } catch (const Error& failure) {
    // The default stands in, and the number is handed on as well.
    if (missing == Missing::IsLogged) {
      const Procedure here(ini.log, "modINI.GetIniString");
      here.error("Failed while trying to get value of key: " + key + " from section: " + section +
                 " from ini file: " + ini.path);
      here.tell(failure);
    }
    return {defaultValue, failure.number()};
  }
}

std::string GetIniString(const IniFile& ini, const std::string& section, const std::string& key,
                         const std::string& defaultValue, Missing missing) {
  return ReadIniValue(ini, section, key, defaultValue, missing).text;
}

std::vector<IniEntry> GetIniEntries(const IniFile& ini, const std::string& section) {
  std::vector<IniEntry> entries;
  for (const std::string& line : SectionLines(ini, section)) {
    const std::size_t equals = line.find('=');
    if (equals != std::string::npos) entries.push_back({line.substr(0, equals), Trim(line.substr(equals + 1))});
  }
  return entries;
}

std::vector<std::string> GetIniKeys(const IniFile& ini, const std::string& section) {
  std::vector<std::string> keys;
  for (const IniEntry& entry : GetIniEntries(ini, section)) keys.push_back(entry.key);
  return keys;
}

std::vector<std::string> GetIniLines(const IniFile& ini, const std::string& section) {
  std::vector<std::string> lines;
  for (const std::string& line : SectionLines(ini, section)) {
    if (!Trim(line).empty()) lines.push_back(line);
  }
  return lines;
}

bool IsValidIniSection(const IniFile& ini, const std::string& section) {
  const Procedure here(ini.log, "modINI.IsValidIniSection");
  return here.guard([&] {
    RequireName(section, 6123);
    IniLines lines = OpenIniFile(ini);
    std::size_t index = 0;
    return FindLine(lines, index, "[" + section + "]", false);
  });
}

IniLines OpenIniFile(const IniFile& ini) {
  const auto failed = [&ini](const std::string& reason) {
    return Error(6122, modErrorBase::GetErrorText(6122, {ini.path}) + " : " + reason, "modINI.OpenIniFile");
  };
  std::string bytes;
  const platform::Status read = ini.files.read(ini.path, bytes);
  if (read != platform::Status::Ok) {
    const Error unread = failed(modErrorBase::SystemErrorText(read));
    if (ini.refusals != nullptr && !platform::IsNotThere(read)) {
      ini.refusals->addUnread(unread.text());
      Procedure(ini.log, "modINI.OpenIniFile").tell(unread);
    }
    throw unread;
  }
  if (bytes.rfind("\xFF\xFE", 0) == 0 || bytes.rfind("\xFE\xFF", 0) == 0) {
    throw failed("The file is Unicode text. Save it as ANSI text");
  }
  constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
  if (bytes.rfind(utf8Mark, 0) == 0) bytes.erase(0, utf8Mark.size());
  try {
    return IniLines(std::move(bytes));
  } catch (const Error& overflow) {
    throw failed(overflow.text());  // the file's name belongs to it
  }
}

bool IsReadable(const IniFile& ini) {
  try {
    OpenIniFile(ini);
    return true;
  } catch (const Error&) {
    return false;  // whoever needs the file tells why
  }
}

bool FindLine(IniLines& lines, std::size_t& index, std::string_view text, bool stopAtSection) {
  std::size_t last = 0;
  bool found = false;
  for (++index; index <= lines.count(); ++index) {
    const std::string_view front = lines.front(index);
    if (!front.empty()) last = index;
    if (stopAtSection && IsHeader(front)) break;
    if (MayBeginWith(front, text) && StartsWithIgnoringCase(lines.at(index), text)) {
      found = true;
      break;
    }
  }
  // A search that ran off the end leaves one more empty line behind.
  if (index > last) lines.addEmpty();
  index = last;
  return found;
}

bool IsHeader(std::string_view line) {
  return !line.empty() && line.front() == '[';
}

// Only the first characters count: a blank before the semicolon makes no comment, and a key that begins with "rem" can
// never be read. Media rely on both.
bool IsDropped(std::string_view line) {
  if (line.empty() || line.front() == ';') return true;
  return (line.front() == 'r' || line.front() == 'R') && EqualIgnoringCase(line.substr(0, 3), "rem");
}

bool ValidStr(const std::string& name) {
  return WithoutTrailBytes(name).find_first_of("[]=") == std::string::npos;
}

std::size_t LineCount(const IniLines& lines) {
  return lines.count();
}

}  // namespace assistant::modINI
