#include "app/qxia/rehearse/rows.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

#include "platform/simulated/text.h"

namespace qxia {
namespace {

constexpr std::string_view TurnBegins = "Next component is ";

/// Rows behind all turns: of the loop, of a run that closes down.
bool EndsTurn(std::string_view text) {
  return text.starts_with("Sequence is:") || text.starts_with("Last Sequence was") ||
         text == "Resetting system registry";
}

/// What getline makes room for.
struct Line {
  char* bytes = nullptr;
  std::size_t room = 0;

  Line() = default;
  ~Line() { std::free(bytes); }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;
};

}  // namespace

LogFile::LogFile(const std::string& path) : file_(std::fopen(path.c_str(), "rb"), std::fclose) {
  if (!file_) simulated::Refuse(path + ": cannot be read: " + std::strerror(errno));
}

void LogFile::forEachRow(const std::function<void(const logs::Row&)>& use) const {
  std::rewind(file_.get());
  Line line;
  for (ssize_t size = 0; (size = getline(&line.bytes, &line.room, file_.get())) >= 0;) {
    logs::Rows rows({line.bytes, static_cast<std::size_t>(size)});
    if (const std::optional<logs::Row> row = rows.next()) use(*row);
  }
}

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

std::string ReasonIn(const std::string& text) {
  return logs::PlainText(std::string_view(text).substr(0, text.find("<BR>Source:")));
}

Turns ComponentTurns(const LogFile& log) {
  Turns turns;
  std::vector<LogRow>* turn = nullptr;
  log.forEachRow([&](const logs::Row& row) {
    if (row.text.starts_with(TurnBegins)) {
      const std::string_view rest = row.text.substr(TurnBegins.size());
      turn = &turns[std::string(rest.substr(0, rest.rfind(" v.")))];
      turn->clear();
    } else if (EndsTurn(row.text)) {
      turn = nullptr;
    }
    if (turn != nullptr) turn->push_back({std::string(row.stamp), ShownKind(row.kind), std::string(row.text)});
  });
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
