// The HTML application log: every report of the program becomes one line of one file, a complete HTML table each, so
// that a browser shows a column of rows and the file is whole at every moment.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <vector>

#include "base/error.h"
#include "base/file_system.h"
#include "platform/platform.h"

/// Kinds of log entry. Other numbers are written with an empty second cell.
namespace EntryType {
inline constexpr int None = 0;
inline constexpr int Error = 1;
inline constexpr int Warning = 2;
inline constexpr int Action = 4;
}  // namespace EntryType

class clsAppLog {
 public:
  /// `folder` is the program's folder; the default log lies there under the program's title.
  clsAppLog(platform::Platform& machine, std::string title, std::string folder);
  clsAppLog(const clsAppLog&) = delete;
  clsAppLog& operator=(const clsAppLog&) = delete;

  /// Begins a new log at the default place: deletes the one that an earlier run left there. Entries are held from now
  /// on.
  void Start();

  bool LogToFile() const { return logToFile_; }
  void LogToFile(bool on) { logToFile_ = on; }
  const std::string& LogFilename() const { return logFilename_; }
  void LogFilename(const std::string& path) { logFilename_ = path; }
  std::string DefaultLogFilename() const;
  int LastErrNumber() const { return lastErrNumber_; }
  void LastErrNumber(int number) { lastErrNumber_ = number; }
  const std::string& LastErrDescription() const { return lastErrDescription_; }
  void LastErrDescription(const std::string& text) { lastErrDescription_ = text; }

  /// Builds one entry and writes it. An Action entry with an error number is written as an error. Never raises: what
  /// fails here goes to a message box (not on silent runs) and to the event log. `description` may hold HTML markup;
  /// a line break in it is written as <br>.
  void Log(const std::string& source, int errNumber, const std::string& description, bool showMessage = false,
           int entryType = EntryType::Action);

  /// An error handler's entry. An empty `source` becomes the error's own.
  void Log(const std::string& source, const Error& error, bool showMessage = false);

  /// Copies the log into the folder under a dated name and, when the folder holds too much, deletes its first file.
  /// False when there was a log and it could not be copied; every failure is logged.
  bool ArchiveLogFile(const std::string& archiveFolder);

  /// Appends one line. Raises the system's number with the source "clsAppLog.WriteLogEntry Line no: " + statement.
  void WriteLogEntry(const std::string& entry);

  /// A silent run shows no box for an entry that could not be written.
  void SilentRun(bool silent) { silent_ = silent; }

  /// Writes the entries held since the start: the run's log file is known now.
  void ReleaseEntries();
  bool HoldsEntries() const { return holding_; }

 private:
  /// An entry that waits for its file, with what is told of it when it cannot be written.
  struct HeldEntry {
    std::string source;
    int errNumber;
    std::string description;
    std::string line;
  };

  void Report(const std::string& source, int errNumber, const std::string& description, const std::exception& failure);
  void Write(const std::string& source, int errNumber, const std::string& description, const std::string& line);
  bool Attempt(void (clsAppLog::*step)(const std::string&), const std::string& archiveFolder);
  std::string Row(const std::string& source, int errNumber, const std::string& description, int type);
  void ShowBox(int errNumber, const std::string& description);
  void CopyToArchive(const std::string& archiveFolder);
  void TrimArchive(const std::string& archiveFolder);

  bool logToFile_ = true;
  int lastErrNumber_ = 0;
  std::string logFilename_;
  std::string lastErrDescription_;
  clsFso fso_;

  platform::Platform& machine_;
  std::string title_;
  std::string folder_;
  bool silent_ = false;
  bool holding_ = false;
  std::vector<HeldEntry> held_;
};
