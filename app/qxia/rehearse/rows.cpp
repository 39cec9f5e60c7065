#include "app/qxia/rehearse/rows.h"

#include <optional>

#include "app/qxia/logs/rows.h"

namespace qxia {
namespace {

constexpr const char* TurnBegins = "Next component is ";

/// Rows behind all turns: of the loop, of a run that closes down.
bool EndsTurn(const std::string& text) {
  return text.rfind("Last Sequence was", 0) == 0 || text == "Resetting system registry";
}

/// As a person sees it in the log.
const char* ShownKind(logs::RowKind kind) {
  switch (kind) {
    case logs::RowKind::Action:
      return "Action";
    case logs::RowKind::Warning:
      return "Warning";
    case logs::RowKind::Error:
      return "ERROR";
    case logs::RowKind::None:
      break;
  }
  return "";
}

}  // namespace

std::vector<LogRow> ParseLog(const std::string& html) {
  std::vector<LogRow> rows;
  logs::Rows lines(html);
  while (const std::optional<logs::Row> row = lines.next())
    rows.push_back({std::string(row->stamp), ShownKind(row->kind), std::string(row->text)});
  return rows;
}

std::string ReasonIn(const std::string& text) {
  return logs::PlainText(std::string_view(text).substr(0, text.find("<BR>Source:")));
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
