// The HTML application log: every report of the program becomes one line of one file, a complete HTML table each, so
// that a browser shows a column of rows and the file is whole at every moment.
#pragma once

#include <exception>
#include <string>
#include <vector>

#include "base/error.h"
#include "base/file_system.h"
#include "platform/platform.h"

namespace assistant {

/// Kinds of log entry. Other numbers are written with an empty second cell.
namespace EntryType {
inline constexpr int None = 0;
inline constexpr int Error = 1;
inline constexpr int Warning = 2;
inline constexpr int Action = 4;
}  // namespace EntryType

/// Whether an entry with a number is shown in a message box as well.
enum class Shown { No, UnlessSilent, Always };

class clsAppLog {
 public:
  /// `folder` is the program's folder; the default log lies there under the program's title.
  clsAppLog(platform::Platform& machine, std::string title, std::string folder);
  clsAppLog(const clsAppLog&) = delete;
  clsAppLog& operator=(const clsAppLog&) = delete;

  /// Begins the log at the default place, and deletes the one that an earlier run left there, unless this run goes on
  /// with it. Entries are held from now on.
  void start(bool goesOn = false);

  bool logToFile() const { return logToFile_; }
  void logToFile(bool on) { logToFile_ = on; }
  const std::string& logFilename() const { return logFilename_; }
  void logFilename(const std::string& path) { logFilename_ = path; }
  std::string defaultLogFilename() const;
  int lastErrNumber() const { return lastErrNumber_; }
  void lastErrNumber(int number) { lastErrNumber_ = number; }
  const std::string& lastErrDescription() const { return lastErrDescription_; }
  void lastErrDescription(const std::string& text) { lastErrDescription_ = text; }

  /// A silent run shows no box for an entry that could not be written.
  bool isSilent() const { return silent_; }
  void beSilent(bool silent) { silent_ = silent; }
  /// Verbose runs tell details as well.
  bool isVerbose() const { return verbose_; }
  void beVerbose(bool verbose) { verbose_ = verbose; }

  /// Builds one entry and writes it. An Action entry with an error number is written as an error. Never raises: what
  /// fails here goes to a message box (not on silent runs) and to the event log. `description` may hold HTML markup;
  /// a line break in it is written as <br>.
  void log(const std::string& source, int errNumber, const std::string& description, Shown shown = Shown::No,
           int entryType = EntryType::Action);

  /// An error handler's entry. An empty `source` becomes the error's own.
  void log(const std::string& source, const Error& error, Shown shown = Shown::No);

  /// Copies the log into the folder under a dated name and, when the folder holds too much, deletes its first file.
  /// Never deletes a copy that this run made, and follows no link. False when there was a log and it could not be
  /// copied; every failure is logged.
  bool archiveLogFile(const std::string& archiveFolder) { return archive(archiveFolder, ""); }

  /// Holds entries from now on: the closing rows.
  void holdClosingRows() { holding_ = true; }
  /// Archives the log with the entries that are held behind it, writes them, and writes nothing any more: what fails in
  /// the archive is told in front of them.
  void finish(const std::string& archiveFolder);

  /// Appends the bytes of one line. Raises the system's number with the source "clsAppLog.WriteLogEntry Line no: " +
  /// statement.
  void writeLogEntry(const std::string& bytes);

  /// Writes the entries held since the start: the run's log file is known now.
  void releaseEntries();
  bool holdsEntries() const { return holding_; }

 private:
  /// What is told of an entry when it cannot be written.
  struct Told {
    const std::string& source;
    int errNumber;
    const std::string& description;
  };
  /// An entry that waits for the log's file, and the bytes it puts there.
  struct Held {
    std::string source;
    int errNumber;
    std::string description;
    std::string bytes;
  };

  void report(const Told& entry, const std::exception& failure);
  bool write(const Told& entry, const std::string& bytes);
  void write(const std::vector<Held>& entries);
  bool archive(const std::string& archiveFolder, const std::string& ending);
  std::string row(const Told& entry, int type);
  void showBox(int errNumber, const std::string& description);
  void requireNoLink(const std::string& archiveFolder);
  void copyToArchive(const std::string& archiveFolder, const std::string& ending);
  void append(const std::string& path, const std::string& bytes);
  void trimArchive(const std::string& archiveFolder);

  bool logToFile_ = true;
  int lastErrNumber_ = 0;
  std::string logFilename_;
  std::string lastErrDescription_;
  clsFso fso_;

  platform::Platform& machine_;
  std::string title_;
  std::string folder_;
  bool silent_ = false;
  bool verbose_ = false;
  bool holding_ = false;
  std::vector<Held> held_;
  std::vector<std::string> archived_;  ///< names of the copies that this run made
};

}  // namespace assistant
