#include "base/app_log.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "base/error_texts.h"
#include "base/numbers.h"
#include "base/paths.h"
#include "base/text.h"
#include "platform/owned.h"

namespace assistant {
namespace {

/// From this sum of bytes on, an archive call deletes one file.
constexpr std::uint64_t ArchiveLimit = 10000001;

/// Room for a row's markup, more than it takes.
constexpr std::size_t MarkupSize = 256;

/// Characters of a record that the event log takes.
constexpr std::size_t LongestRecord = 30000;

/// The bold tags stay open: readers of these logs search for this markup as it stands.
const char* TypeText(int entryType) {
  switch (entryType) {
    case EntryType::Error:
      return "<FONT color=red><b>*** ERROR ***</FONT>";
    case EntryType::Warning:
      return "<FONT color=green><b>Warning</FONT>";
    case EntryType::Action:
      return "Action";
    default:
      return "";
  }
}

/// "dd/mm/yy hh:nn:ss.mmm"
std::string Stamp(const platform::LocalTime& t) {
  char buffer[96];
  std::snprintf(buffer, sizeof buffer, "%02d/%02d/%02d %02d:%02d:%02d.%03d", t.day, t.month, t.year % 100, t.hour,
                t.minute, t.second, t.millisecond);
  return buffer;
}

/// "yymmddhhnn"
std::string ArchiveStamp(const platform::LocalTime& t) {
  return Padded(t.year % 100, 2) + Padded(t.month, 2) + Padded(t.day, 2) + Padded(t.hour, 2) + Padded(t.minute, 2);
}

/// A line break of either kind becomes <br>.
std::string OnOneLine(const std::string& description) {
  if (description.find_first_of("\r\n") == std::string::npos) return description;
  std::string line;
  for (std::size_t at = 0; at < description.size(); ++at) {
    const bool pair = description[at] == '\r' && at + 1 < description.size() && description[at + 1] == '\n';
    if (pair) continue;
    const bool breaks = description[at] == '\r' || description[at] == '\n';
    breaks ? line.append("<br>") : line.append(1, description[at]);
  }
  return line;
}

}  // namespace

clsAppLog::clsAppLog(platform::Platform& machine, std::string title, std::string folder)
    : fso_(machine), machine_(machine), title_(std::move(title)), folder_(std::move(folder)) {
  logFilename_ = defaultLogFilename();
}

void clsAppLog::start(bool goesOn) {
  holding_ = true;
  if (goesOn || !fso_.fileExists(logFilename_)) return;
  try {
    fso_.deleteFileForced(logFilename_);
  } catch (const Error& failure) {
    log("clsAppLog.Start", failure);  // the log itself has no procedure to guard it
  }
}

std::string clsAppLog::defaultLogFilename() const {
  return folder_ + "\\" + title_ + ".html";
}

void clsAppLog::log(const std::string& source, int errNumber, const std::string& description, Shown shown,
                    int entryType) {
  if (description.empty() && errNumber == 0) return;
  const int type = errNumber != 0 && entryType == EntryType::Action ? EntryType::Error : entryType;
  Entry entry{source, errNumber, description, row(source, errNumber, description, type)};
  if (!write(entry)) return;
  if (description == "Exit") {
    entry.line = " ";
    if (!write(entry)) return;
  }
  const bool isShown = shown == Shown::Always || (shown == Shown::UnlessSilent && !silent_);
  if (isShown && errNumber != 0) showBox(errNumber, description);
  lastErrNumber_ = errNumber;
  lastErrDescription_ = description;
}

std::string clsAppLog::row(const std::string& source, int errNumber, const std::string& description, int type) {
  std::string row;
  row.reserve(description.size() + source.size() + MarkupSize);
  row.append("<TABLE cellpadding=\"0\" border=\"0\"><TR valign=\"top\"><TD width=\"150\">");
  row.append(Stamp(machine_.clock().now())).append("</TD><TD width=\"120\">").append(TypeText(type));
  row.append("</TD><TD width=\"550\">").append(OnOneLine(description));
  if (errNumber != 0) {
    row.append("<BR>Source: ").append(source).append(" Error No = ").append(std::to_string(errNumber));
  }
  return row.append("</TD></TR></TABLE>");
}

void clsAppLog::log(const std::string& source, const Error& error, Shown shown) {
  log(source.empty() ? error.source() : source, error.number(), error.text(), shown, EntryType::Action);
}

/// Writes or holds the entry. False when it could not be written, which is reported: what the log cannot hold goes
/// elsewhere.
bool clsAppLog::write(const Entry& entry) {
  if (!logToFile_) return true;
  if (holding_) {
    held_.push_back(entry);
    return true;
  }
  try {
    writeLogEntry(entry.line);
    return true;
  } catch (const std::exception& failure) {
    report(entry, failure);
    return false;
  }
}

void clsAppLog::releaseEntries() {
  holding_ = false;
  for (const Entry& entry : std::exchange(held_, {})) write(entry);
}

void clsAppLog::writeLogEntry(const std::string& entry) {
  if (logFilename_.find_first_not_of(' ') == std::string::npos) logFilename_ = defaultLogFilename();
  append(logFilename_, entry + LineBreak);
}

void clsAppLog::append(const std::string& path, const std::string& lines) {
  // The statement that failed is told by the number it has among the ten of WriteLogEntry.
  const auto require = [](platform::Status status, int statement) {
    if (status == platform::Status::Ok) return;
    throw Error(platform::Number(status), modErrorBase::SystemErrorText(status),
                "clsAppLog.WriteLogEntry Line no: " + std::to_string(statement));
  };
  platform::OwnedFile file(machine_.files());
  require(machine_.files().openForAppending(path, file.receive()), 6);
  const platform::Status written = machine_.files().write(*file, lines);
  const platform::Status closed = file.close();
  require(written, 8);
  require(closed, 9);
}

void clsAppLog::report(const Entry& entry, const std::exception& failure) {
  if (!silent_) machine_.dialogs().messageBox({.title = title_, .text = entry.source});
  const auto* error = dynamic_cast<const Error*>(&failure);
  const std::string records[] = {
      "Routine name passed in: " + entry.source,
      "Description passed in: " + entry.description,
      "Number passed in : " + std::to_string(entry.errNumber),
      "Method Log of clsAppLog failed, Error No : " + std::to_string(error ? error->number() : GeneralError) +
          " Description : " + failure.what() + LineBreak + "Error Source = " + (error ? error->source() : ""),
  };
  for (const std::string& record : records) machine_.eventLog().reportError(title_, record.substr(0, LongestRecord));
}

void clsAppLog::showBox(int errNumber, const std::string& description) {
  machine_.dialogs().messageBox({.title = title_ + " Error",
                                 .text = std::string("A critical run-time error has occurred ") + LineBreak +
                                         LineBreak + "Error #" + std::to_string(errNumber) + ": '" + description + "'",
                                 .icon = platform::BoxIcon::Critical});
}

/// A failed copy is logged, and still lets the folder be trimmed.
bool clsAppLog::archive(const std::string& archiveFolder, const std::string& ending) {
  const auto attempt = [this](auto&& step) {
    try {
      step();
      return true;
    } catch (const Error& failure) {
      log("ArchiveLogFile", failure);
      return false;
    }
  };
  bool copied = true;
  if (fso_.fileExists(logFilename_)) {
    copied = attempt([&] { copyToArchive(archiveFolder, ending); });
    machine_.mainWindow().pumpMessages();
  }
  attempt([&] { trimArchive(archiveFolder); });
  return copied;
}

void clsAppLog::finish(const std::string& archiveFolder) {
  holding_ = false;
  const std::vector<Entry> closing = std::exchange(held_, {});
  std::string ending;
  for (const Entry& entry : closing) ending.append(entry.line).append(LineBreak);
  archive(archiveFolder, ending);
  for (const Entry& entry : closing) write(entry);
  logToFile_ = false;
}

/// What somebody else's link leads to is none of the log's.
void clsAppLog::requireNoLink(const std::string& archiveFolder) {
  platform::Attributes attributes;
  machine_.files().attributes(archiveFolder, attributes);
  if (!attributes.link) return;
  throw Error(GeneralError,
              archiveFolder + " is a link to another folder, so no log is archived there. Put a folder in its place.",
              "ArchiveLogFile");
}

/// The copy has the rows that the log is still to get. A file of its own was made for it just now.
void clsAppLog::copyToArchive(const std::string& archiveFolder, const std::string& ending) {
  requireNoLink(archiveFolder);
  fso_.createFolder(archiveFolder);
  const std::string name = archiveFolder + "\\" + title_ + ArchiveStamp(machine_.clock().now());
  std::string archived = name + ".html";
  // No further letters: a third archive within one minute replaces the second.
  if (fso_.fileExists(archived)) archived = name + "a.html";
  // Not copied over: what bears the name may be a link to another file.
  if (fso_.fileExists(archived)) fso_.deleteFileForced(archived);
  fso_.copyFileOver(logFilename_, archived);
  archived_.push_back(LastElement(archived));
  if (!ending.empty()) append(archived, ending);
}

void clsAppLog::trimArchive(const std::string& archiveFolder) {
  requireNoLink(archiveFolder);
  std::vector<platform::FolderEntry> entries;
  const platform::Status listed = machine_.files().list(archiveFolder, entries);
  if (listed != platform::Status::Ok && !platform::IsNotThere(listed)) {
    throw Error(platform::Number(listed), modErrorBase::SystemErrorText(listed) + ": " + archiveFolder,
                "ArchiveLogFile");
  }
  std::uint64_t sum = 0;
  std::string first;
  for (const platform::FolderEntry& entry : entries) {
    if (entry.isFolder()) continue;
    const bool isOwn = std::any_of(archived_.begin(), archived_.end(),
                                   [&](const std::string& own) { return EqualIgnoringCase(own, entry.name); });
    if (first.empty() && !isOwn) first = entry.name;
    sum += entry.size;
  }
  if (sum >= ArchiveLimit && !first.empty()) fso_.deleteFileForced(archiveFolder + "\\" + first);
}

}  // namespace assistant
