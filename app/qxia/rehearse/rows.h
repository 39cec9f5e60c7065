// The program's HTML log, as rows.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace qxia {

struct LogRow {
  std::string time;
  std::string kind;  ///< "Action", "Warning", "ERROR"
  std::string text;  ///< as it stands there
};

std::vector<LogRow> ParseLog(const std::string& html);

/// A row's text without markup, and without the source that an error tells.
std::string ReasonIn(const std::string& text);

/// The rows of each component's turn, by the component's name; of several turns the last.
std::map<std::string, std::vector<LogRow>> ComponentTurns(const std::vector<LogRow>& rows);

/// The text behind the beginning in the last row that has it; "" where none has.
std::string TextBehind(const std::vector<LogRow>& rows, const std::string& beginning);
bool HasText(const std::vector<LogRow>& rows, const std::string& part);

}  // namespace qxia
