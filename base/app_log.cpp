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

/// "dd/mm/yy hh:nn:ss.mmm". By hand: formatted output takes a fifth of the time that an entry has.
std::string Stamp(const platform::LocalTime& t) {
  std::string stamp = "00/00/00 00:00:00.000";
  const auto put = [&stamp](std::size_t at, int digits, int value) {
    for (; digits > 0; value /= 10)
      stamp[at + static_cast<std::size_t>(--digits)] = static_cast<char>('0' + value % 10);
  };
  put(0, 2, t.day);
  put(3, 2, t.month);
  put(6, 2, t.year);
  put(9, 2, t.hour);
  put(12, 2, t.minute);
  put(15, 2, t.second);
  put(18, 3, t.millisecond);
  return stamp;
}

/// "yymmddhhnn"
std::string ArchiveStamp(const platform::LocalTime& t) {
  return Padded(t.year % 100, 2) + Padded(t.month, 2) + Padded(t.day, 2) + Padded(t.hour, 2) + Padded(t.minute, 2);
}

/// Appends the text on one line: a line break of either kind becomes <br>.
void AppendOnOneLine(std::string& line, const std::string& description) {
  const auto has = [&](char c) { return description.find(c) != std::string::npos; };
  if (!has('\r') && !has('\n')) {
    line.append(description);
    return;
  }
  for (std::size_t at = 0; at < description.size(); ++at) {
    const bool pair = description[at] == '\r' && at + 1 < description.size() && description[at + 1] == '\n';
    if (pair) continue;
    const bool breaks = description[at] == '\r' || description[at] == '\n';
    breaks ? line.append("<br>") : line.append(1, description[at]);
  }
}

}  // namespace

clsAppLog::clsAppLog(platform::Platform& machine, std::string title, std::string folder)
    : fso_(machine), machine_(machine), title_(std::move(title)), folder_(std::move(folder)) {
  logFilename_ = defaultLogFilename();
}

void clsAppLog::start(bool goesOn) {
  holding_ = true;
  if (goesOn || fso_.fileIsGone(logFilename_)) return;
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
  const Told entry{source, errNumber, description};
  if (!write(entry, row(entry, type))) return;
  if (description == "Exit" && !write(entry, std::string(" ") + LineBreak)) return;
  const bool isShown = shown == Shown::Always || (shown == Shown::UnlessSilent && !silent_);
  if (isShown && errNumber != 0) showBox(errNumber, description);
  lastErrNumber_ = errNumber;
  lastErrDescription_ = description;
}

std::string clsAppLog::row(const Told& entry, int type) {
  std::string row;
  row.reserve(entry.description.size() + entry.source.size() + MarkupSize);
  row.append("<TABLE cellpadding=\"0\" border=\"0\"><TR valign=\"top\"><TD width=\"150\">");
  row.append(Stamp(machine_.clock().now())).append("</TD><TD width=\"120\">").append(TypeText(type));
  row.append("</TD><TD width=\"550\">");
  AppendOnOneLine(row, entry.description);
  if (entry.errNumber != 0) {
    row.append("<BR>Source: ").append(entry.source).append(" Error No = ").append(std::to_string(entry.errNumber));
  }
  return row.append("</TD></TR></TABLE>").append(LineBreak);
}

void clsAppLog::log(const std::string& source, const Error& error, Shown shown) {
  log(source.empty() ? error.source() : source, error.number(), error.text(), shown, EntryType::Action);
}

/// Writes or holds the entry. False when it could not be written, which is reported: what the log cannot hold goes
/// elsewhere.
bool clsAppLog::write(const Told& entry, const std::string& bytes) {
  if (!logToFile_) return true;
  if (holding_) {
    held_.push_back({entry.source, entry.errNumber, entry.description, bytes});
    return true;
  }
  try {
    writeLogEntry(bytes);
    return true;
  } catch (const std::exception& failure) {
    report(entry, failure);
    return false;
  }
}

void clsAppLog::releaseEntries() {
  holding_ = false;
  write(std::exchange(held_, {}));
}

void clsAppLog::write(const std::vector<Held>& entries) {
  for (const Held& held : entries) write({held.source, held.errNumber, held.description}, held.bytes);
}

void clsAppLog::writeLogEntry(const std::string& bytes) {
  if (logFilename_.find_first_not_of(' ') == std::string::npos) logFilename_ = defaultLogFilename();
  append(logFilename_, bytes);
}

void clsAppLog::append(const std::string& path, const std::string& bytes) {
  // The statement that failed is told by the number it has among the ten of WriteLogEntry.
  const auto require = [](platform::Status status, int statement) {
    if (status == platform::Status::Ok) return;
    throw Error(platform::Number(status), modErrorBase::SystemErrorText(status),
                "clsAppLog.WriteLogEntry Line no: " + std::to_string(statement));
  };
  platform::OwnedFile file(machine_.files());
  require(machine_.files().openForAppending(path, file.receive()), 6);
  const platform::Status written = machine_.files().write(*file, bytes);
  const platform::Status closed = file.close();
  require(written, 8);
  require(closed, 9);
}

void clsAppLog::report(const Told& entry, const std::exception& failure) {
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
  if (!fso_.fileIsGone(logFilename_)) {
    copied = attempt([&] { copyToArchive(archiveFolder, ending); });
    machine_.mainWindow().pumpMessages();
  }
  attempt([&] { trimArchive(archiveFolder); });
  return copied;
}

void clsAppLog::finish(const std::string& archiveFolder) {
  holding_ = false;
  const std::vector<Held> closing = std::exchange(held_, {});
  std::string ending;
  for (const Held& held : closing) ending.append(held.bytes);
  archive(archiveFolder, ending);
  write(closing);
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
  fso_.copyFile(logFilename_, archived);
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
