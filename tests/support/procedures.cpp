#include "tests/support/procedures.h"

namespace {

constexpr const char* Cells[] = {"<TABLE cellpadding=\"0\" border=\"0\"><TR valign=\"top\"><TD width=\"150\">",
                                 "</TD><TD width=\"120\">", "</TD><TD width=\"550\">", "</TD></TR></TABLE>"};

/// Cuts the text between two marks off the line's start; false when the line is built otherwise.
bool Take(std::string& line, const char* before, const char* behind, std::string& cell) {
  const std::string start = before;
  const std::size_t end = line.find(behind, start.size());
  if (line.rfind(start, 0) != 0 || end == std::string::npos) return false;
  cell = line.substr(start.size(), end - start.size());
  line.erase(0, end);
  return true;
}

}  // namespace

bool ReadRow(std::string line, LogRow& row) {
  return Take(line, Cells[0], Cells[1], row.stamp) && Take(line, Cells[1], Cells[2], row.type) &&
         Take(line, Cells[2], Cells[3], row.description) && line == Cells[3];
}

bool operator==(const LogRow& a, const LogRow& b) {
  return a.stamp == b.stamp && a.type == b.type && a.description == b.description;
}

std::ostream& operator<<(std::ostream& out, const LogRow& row) {
  return out << "[" << row.stamp << "|" << row.type << "|" << row.description.substr(0, 300) << "]";
}

std::vector<LogRow> LogRows(const std::string& log) {
  std::vector<LogRow> rows;
  for (std::size_t start = 0; start < log.size();) {
    const std::size_t end = log.find("\r\n", start);
    const std::string line = log.substr(start, end - start);
    LogRow row;
    if (end == std::string::npos || !ReadRow(line, row)) {
      ADD_FAILURE() << "no whole entry: " << line.substr(0, 300);
    } else {
      rows.push_back(row);
    }
    start = end == std::string::npos ? end : end + 2;
  }
  return rows;
}

std::vector<LogRow> RowsOf(const std::string& log, const std::string& type) {
  std::vector<LogRow> found;
  for (const LogRow& row : LogRows(log))
    if (row.type == type) found.push_back(row);
  return found;
}

Procedures::~Procedures() {
  EXPECT_EQ(rig.machine().registry().openKeys(), 0U);
  EXPECT_EQ(rig.machine().installer().openHandles(), 0U);
}
