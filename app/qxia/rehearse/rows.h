// The program's HTML log, as rows.
#pragma once

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/qxia/logs/rows.h"

namespace qxia {

/// A log of the host. It tells the whole sequence at each component's turn, so only the row in work is in memory. It
/// stays readable when the file's name is gone.
class LogFile {
 public:
  /// Raises std::runtime_error for a file that cannot be opened.
  explicit LogFile(const std::string& path);

  /// The row is there as long as the call.
  void forEachRow(const std::function<void(const logs::Row&)>& use) const;

 private:
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

struct LogRow {
  std::string time;
  std::string kind;  ///< "Action", "Warning", "ERROR"
  std::string text;  ///< as it stands there
};

/// "Action", "Warning", "ERROR": as a person sees it in the log.
const char* ShownKind(logs::RowKind kind);

/// A row's text without markup, and without the source that an error tells.
std::string ReasonIn(const std::string& text);

/// The rows of each component's turn, by the component's name; of several turns the last.
using Turns = std::map<std::string, std::vector<LogRow>>;
Turns ComponentTurns(const LogFile& log);

/// The text behind the beginning in the last row that has it; "" where none has.
std::string TextBehind(const std::vector<LogRow>& rows, const std::string& beginning);
bool HasText(const std::vector<LogRow>& rows, const std::string& part);

}  // namespace qxia
