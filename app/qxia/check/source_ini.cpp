#include "app/qxia/check/source_ini.h"

#include <algorithm>
#include <utility>

#include "base/error.h"
#include "base/ini.h"
#include "base/text.h"

namespace qxia::check {
namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

std::vector<std::string> LinesOf(const std::string& bytes) {
  std::vector<std::string> lines;
  std::size_t at = 0;
  while (at < bytes.size()) {
    const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
    lines.push_back(bytes.substr(at, end - at));
    if (!lines.back().empty() && lines.back().back() == '\r') lines.back().pop_back();
    at = end + 1;
  }
  return lines;
}

IniEntry EntryOf(const std::string& line, int number) {
  const std::size_t equals = line.find('=');
  if (equals == std::string::npos) return {number, line, "", line, false};
  return {number, line.substr(0, equals), assistant::Trim(line.substr(equals + 1)), line, true};
}

/// A header whose bracket is never closed has no name that the program would find.
std::string SectionName(const std::string& header) {
  const std::size_t end = header.find(']', 1);
  return end == std::string::npos ? header : header.substr(1, end - 1);
}

}  // namespace

SourceIni::SourceIni(std::string shown, std::string bytes) : shown_(std::move(shown)) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    state_ = State::Utf16;
    return;
  }
  hasUtf8Mark_ = bytes.starts_with(Utf8Mark);
  if (hasUtf8Mark_) bytes.erase(0, Utf8Mark.size());
  lines_ = LinesOf(bytes);
  try {
    const assistant::modINI::IniLines counted(std::move(bytes));
    readSections();
  } catch (const assistant::Error& overflow) {
    state_ = State::Unreadable;
    reason_ = "more than 32767 lines count";
  }
}

SourceIni SourceIni::unreadable(std::string shown, std::string reason) {
  SourceIni ini;
  ini.shown_ = std::move(shown);
  ini.reason_ = std::move(reason);
  ini.state_ = State::Unreadable;
  return ini;
}

void SourceIni::readSections() {
  sections_.push_back({});
  int number = 0;
  for (const std::string& line : lines_) {
    ++number;
    if (assistant::modINI::IsDropped(line)) continue;
    if (assistant::modINI::IsHeader(line)) {
      sections_.push_back({number, SectionName(line), {}});
    } else {
      sections_.back().entries.push_back(EntryOf(line, number));
    }
  }
}

const IniSection* SourceIni::section(const std::string& name) const {
  const auto found = std::find_if(sections_.begin(), sections_.end(), [&](const IniSection& candidate) {
    return candidate.line > 0 && assistant::EqualIgnoringCase(candidate.name, name);
  });
  return found == sections_.end() ? nullptr : &*found;
}

const IniEntry* SourceIni::find(const std::string& section, const std::string& key) const {
  const IniSection* found = this->section(section);
  return found == nullptr ? nullptr : FindEntry(*found, key);
}

std::string SourceIni::value(const std::string& section, const std::string& key, const std::string& otherwise) const {
  const IniEntry* entry = find(section, key);
  return entry == nullptr ? otherwise : entry->value;
}

int SourceIni::lineOf(const std::string& section, const std::string& key) const {
  const IniSection* found = this->section(section);
  if (found == nullptr) return 1;
  const IniEntry* entry = FindEntry(*found, key);
  return entry == nullptr ? found->line : entry->line;
}

const IniEntry* FindEntry(const IniSection& section, const std::string& key) {
  const auto found = std::find_if(section.entries.begin(), section.entries.end(), [&](const IniEntry& entry) {
    return entry.hasEquals && assistant::EqualIgnoringCase(entry.key, key);
  });
  return found == section.entries.end() ? nullptr : &*found;
}

}  // namespace qxia::check
