// What tests of single procedures stand on: a run that nobody started, and its log as rows.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "base/run.h"
#include "tests/support/rig.h"

/// One entry of a log: the three cells of its table.
struct LogRow {
  std::string stamp;
  std::string type;
  std::string description;
};

/// What the second cell shows.
inline constexpr const char* ErrorMark = "<FONT color=red><b>*** ERROR ***</FONT>";
inline constexpr const char* WarningMark = "<FONT color=green><b>Warning</FONT>";
inline constexpr const char* ActionMark = "Action";

bool operator==(const LogRow& a, const LogRow& b);
std::ostream& operator<<(std::ostream& out, const LogRow& row);

/// Reads a line of a log, without its end, as an entry; false when it is none.
bool ReadRow(std::string line, LogRow& row);
/// The entries of a log. A line that is not whole, or is no entry, fails the test.
std::vector<LogRow> LogRows(const std::string& log);
/// Those whose second cell is this.
std::vector<LogRow> RowsOf(const std::string& log, const std::string& type);

/// A machine with the program on it, and a run that no procedure has touched yet. At its end no registry key and no
/// package may be left open.
class Procedures : public testing::Test {
 protected:
  Procedures() { rig.tolerateUnused(); }
  ~Procedures() override;

  std::string logText() { return rig.text(run.services.log.logFilename()); }
  std::vector<LogRow> rows() { return LogRows(logText()); }
  void emptyLog() { rig.machine().files().remove(run.services.log.logFilename()); }

  Rig rig;
  assistant::Run run{rig.machine()};
};
