#include "base/ini.h"

#include <cstring>
#include <limits>
#include <utility>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/text.h"

namespace modINI {
namespace {

constexpr int OverflowError = 6;

/// Bytes of a short line, from which the number of lines is guessed.
constexpr std::size_t UsualLine = 24;

bool IsHeader(std::string_view line) {
  return !line.empty() && line.front() == '[';
}

/// Only the first characters count: a blank before the semicolon makes no comment, and a key that begins with "rem" can
/// never be read. Media rely on both.
bool IsDropped(std::string_view line) {
  if (line.empty() || line.front() == ';') return true;
  return (line.front() == 'r' || line.front() == 'R') && StartsWithIgnoringCase(line, "rem");
}

void RequireName(const std::string& name, int errorNumber) {
  if (!ValidStr(name)) throw modErrorBase::MakeError(errorNumber, {name}, "modINI");
}

/// The lines of a file and the header of the section in them.
struct OpenSection {
  IniLines lines;
  std::size_t header;
};

OpenSection Open(Run& run, const std::string& section, const std::string& iniFile) {
  OpenSection opened{OpenIniFile(run, iniFile), 0};
  if (!FindLine(opened.lines, opened.header, "[" + section + "]", false)) {
    throw modErrorBase::MakeError(6120, {section, iniFile}, "modINI");
  }
  return opened;
}

std::string ReadValue(Run& run, const std::string& section, const std::string& key, const std::string& iniFile) {
  RequireName(section, 6123);
  RequireName(key, 6124);
  OpenSection opened = Open(run, section, iniFile);
  std::size_t index = opened.header;
  if (!FindLine(opened.lines, index, key + "=", true)) {
    throw modErrorBase::MakeError(6121, {key, section, iniFile}, "modINI");
  }
  const std::string_view line = opened.lines.at(index);
  return Trim(line.substr(line.find('=') + 1));
}

}  // namespace

IniLines::IniLines(std::string bytes) : bytes_(std::make_unique<const std::string>(std::move(bytes))) {
  lines_.reserve(bytes_->size() / UsualLine + 1);
  const char* at = bytes_->data();
  const char* const end = at + bytes_->size();
  while (at < end) {
    const auto* found = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
    const char* const next = found == nullptr ? end : found;
    std::string_view line(at, static_cast<std::size_t>(next - at));
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    Keep(line);
    at = next + 1;
  }
}

void IniLines::Keep(std::string_view line) {
  // The count is 16 bits wide, and a line is counted before it is looked at.
  const bool header = IsHeader(line);
  if (lines_.size() + (header ? 2 : 1) > std::numeric_limits<std::int16_t>::max()) {
    throw Error(OverflowError, "Overflow", "modINI.OpenIniFile");
  }
  if (IsDropped(line)) return;
  if (header) lines_.emplace_back();
  lines_.push_back(line);
}

std::string GetIniString(Run& run, const std::string& section, const std::string& key, const std::string& defaultValue,
                         const std::string& iniFile, bool silent) {
  try {
    return ReadValue(run, section, key, iniFile);
  } catch (const Error& failure) {
    run.lastIniError = failure.number();
    if (!silent) {
      run.log.Log("modINI.GetIniString", 0,
                  "Failed while trying to get value of key: " + key + " from section: " + section +
                      " from ini file: " + iniFile,
                  false, EntryType::Error);
      run.log.Log("modINI.GetIniString", failure.number(), failure.text(), false, EntryType::Error);
    }
    return defaultValue;
  }
}

void GetIniKeys(Run& run, std::vector<std::string>& keys, const std::string& section, const std::string& iniFile,
                bool keysOnly) {
  keys.clear();
  Guarded(run, "modINI.GetIniKeys", [&] {
    RequireName(section, 6123);
    const OpenSection opened = Open(run, section, iniFile);
    for (std::size_t i = opened.header + 1; i <= opened.lines.count() && !IsHeader(opened.lines.at(i)); ++i) {
      const std::string_view line = opened.lines.at(i);
      const std::size_t equals = line.find('=');
      if (keysOnly && equals != std::string_view::npos) keys.emplace_back(line.substr(0, equals));
      if (!keysOnly && !Trim(line).empty()) keys.emplace_back(line);
    }
  });
}

bool IsValidIniSection(Run& run, const std::string& section, const std::string& iniFile) {
  return Guarded(run, "modINI.IsValidIniSection", [&] {
    RequireName(section, 6123);
    IniLines lines = OpenIniFile(run, iniFile);
    std::size_t index = 0;
    return FindLine(lines, index, "[" + section + "]", false);
  });
}

IniLines OpenIniFile(Run& run, const std::string& iniFile) {
  const auto failed = [&iniFile](const std::string& reason) {
    return Error(6122, modErrorBase::GetErrorText(6122, {iniFile}) + " : " + reason, "modINI.OpenIniFile");
  };
  std::string bytes;
  const platform::Status read = run.machine.files().read(iniFile, bytes);
  if (read != platform::Status::Ok) throw failed(modErrorBase::SystemErrorText(read));
  if (bytes.rfind("\xFF\xFE", 0) == 0 || bytes.rfind("\xFE\xFF", 0) == 0) {
    throw failed("The file is Unicode text. Save it as ANSI text");
  }
  try {
    return IniLines(std::move(bytes));
  } catch (const Error& overflow) {
    throw failed(overflow.text());
  }
}

bool FindLine(IniLines& lines, std::size_t& index, std::string_view text, bool stopAtSection) {
  std::size_t last = 0;
  bool found = false;
  for (++index; index <= lines.count(); ++index) {
    const std::string_view line = lines.at(index);
    if (!line.empty()) last = index;
    if (stopAtSection && IsHeader(line)) break;
    if (StartsWithIgnoringCase(line, text)) {
      found = true;
      break;
    }
  }
  // A search that ran off the end leaves one more empty line behind.
  if (index > last) lines.addEmpty();
  index = last;
  return found;
}

bool ValidStr(const std::string& name) {
  return name.find_first_of("[]=") == std::string::npos;
}

std::size_t LineCount(const IniLines& lines) {
  return lines.count();
}

}  // namespace modINI
