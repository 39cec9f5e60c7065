#include "app/qxia/rehearse/rows.h"

namespace qxia {
namespace {

constexpr const char* Cells[] = {"<TD width=\"150\">", "<TD width=\"120\">", "<TD width=\"550\">"};
constexpr const char* CellEnd = "</TD>";
constexpr const char* RowEnd = "</TD></TR></TABLE>\r\n";
constexpr const char* TurnBegins = "Next component is ";

/// Rows behind all turns: of the loop, of a run that closes down.
bool EndsTurn(const std::string& text) {
  return text.rfind("Last Sequence was", 0) == 0 || text == "Resetting system registry";
}

std::string WithoutTags(const std::string& html) {
  std::string text;
  bool inTag = false;
  for (const char c : html) {
    if (c == '<') {
      inTag = true;
      text += ' ';
    } else if (c == '>' && inTag) {
      inTag = false;
    } else if (!inTag) {
      text += c;
    }
  }
  return text;
}

std::string InOneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    const bool blank = c == ' ' || c == '\r' || c == '\n' || c == '\t';
    if (blank && (line.empty() || line.back() == ' ')) continue;
    line += blank ? ' ' : c;
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

/// The kind's cell without its colour and asterisks.
std::string KindOfRow(const std::string& cell) {
  std::string kind;
  for (const char c : WithoutTags(cell))
    if (c != '*' && c != ' ') kind += c;
  return kind;
}

/// What stands between a mark and an end, from `at` on, which moves behind it; false where it is not there.
bool Take(const std::string& text, std::size_t& at, const char* mark, const char* end, std::string& taken) {
  const std::size_t open = text.find(mark, at);
  if (open == std::string::npos) return false;
  const std::size_t start = open + std::string(mark).size();
  const std::size_t close = text.find(end, start);
  if (close == std::string::npos) return false;
  taken = text.substr(start, close - start);
  at = close;
  return true;
}

}  // namespace

std::vector<LogRow> ParseLog(const std::string& html) {
  std::vector<LogRow> rows;
  std::size_t at = 0;
  LogRow row;
  while (Take(html, at, Cells[0], CellEnd, row.time) && Take(html, at, Cells[1], CellEnd, row.kind) &&
         Take(html, at, Cells[2], RowEnd, row.text)) {
    row.kind = KindOfRow(row.kind);
    rows.push_back(row);
  }
  return rows;
}

std::string PlainText(const std::string& html) {
  return InOneLine(WithoutTags(html.substr(0, html.find("<BR>Source:"))));
}

std::map<std::string, std::vector<LogRow>> ComponentTurns(const std::vector<LogRow>& rows) {
  std::map<std::string, std::vector<LogRow>> turns;
  std::vector<LogRow>* turn = nullptr;
  for (const LogRow& row : rows) {
    if (row.text.rfind(TurnBegins, 0) == 0) {
      const std::string rest = row.text.substr(std::string(TurnBegins).size());
      turn = &turns[rest.substr(0, rest.rfind(" v."))];
      turn->clear();
    } else if (EndsTurn(row.text)) {
      turn = nullptr;
    }
    if (turn != nullptr) turn->push_back(row);
  }
  return turns;
}

std::string TextBehind(const std::vector<LogRow>& rows, const std::string& beginning) {
  for (auto row = rows.rbegin(); row != rows.rend(); ++row)
    if (row->text.rfind(beginning, 0) == 0) return row->text.substr(beginning.size());
  return "";
}

bool HasText(const std::vector<LogRow>& rows, const std::string& part) {
  for (const LogRow& row : rows)
    if (row.text.find(part) != std::string::npos) return true;
  return false;
}

}  // namespace qxia
