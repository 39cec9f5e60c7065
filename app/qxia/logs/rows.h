// The rows of the program's HTML log, which is one table with one row per line.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qxia::logs {

enum class RowKind { None, Action, Warning, Error };
const char* NameOf(RowKind kind);

/// One row. The views point into the log.
struct Row {
  int number = 0;          ///< of its line, counted from 1
  std::string_view stamp;  ///< "dd/mm/yy hh:nn:ss.mmm"
  RowKind kind = RowKind::None;
  std::string_view text;  ///< as written: in the machine's code page, with the markup that it may hold
};

/// The row that a line is; nothing for any other line.
std::optional<Row> ParseRow(std::string_view line, int number);

/// Goes through a log line by line, past what is no row.
class Rows {
 public:
  explicit Rows(std::string_view log) : rest_(log) {}

  /// The next row; nothing at the end.
  std::optional<Row> next();
  /// The number of the first line so far that should have been a row and is none; 0 when there was none.
  int firstBrokenLine() const { return firstBroken_; }

 private:
  std::string_view rest_;
  int line_ = 0;
  int firstBroken_ = 0;
};

/// True when the first line is a row: only then the file is a log.
bool IsLog(std::string_view log);

/// "2006-03-05T14:03:27.481" for a row's stamp, whose years 80 to 99 are those of the last century.
std::string IsoTime(std::string_view stamp);

/// A row's text without markup: <br> becomes "; ", other tags go.
std::string PlainText(std::string_view text);

}  // namespace qxia::logs
