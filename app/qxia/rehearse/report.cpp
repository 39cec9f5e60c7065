#include "app/qxia/rehearse/report.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include "app/qxia/rehearse/component_rows.h"

namespace qxia {
namespace {

std::string Padded(const std::string& text, std::size_t width) {
  return text.size() >= width ? text : text + std::string(width - text.size(), ' ');
}

std::size_t Widest(const std::vector<std::string>& texts) {
  std::size_t widest = 0;
  for (const std::string& text : texts) widest = std::max(widest, text.size());
  return widest;
}

std::string Trimmed(std::string line) {
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line + "\n";
}

std::string List(const char* title, const std::vector<std::string>& lines) {
  if (lines.empty()) return "";
  std::string text = std::string("\n") + title + "\n";
  for (const std::string& line : lines) text += "  " + line + "\n";
  return text;
}

std::string Table(const std::vector<ComponentResult>& components) {
  std::vector<std::string> names;
  names.reserve(components.size());
  for (const ComponentResult& component : components) names.push_back(component.name);
  const std::size_t width = Widest(names);
  std::string text;
  for (const ComponentResult& component : components) {
    char number[16];
    std::snprintf(number, sizeof number, "%6d  ", component.sequence);
    text += Trimmed(number + Padded(component.name, width) + "  " + Padded(component.kind, 4) + "  " +
                    Padded(NameOf(component.outcome), 17) + "  " + component.reason);
  }
  return text;
}

/// What the machine did about restarts, discs and boxes, with the time since the start.
std::vector<std::string> Course(const RehearsedRun& run) {
  static constexpr const char* told[] = {
      "start ", "the machine restarts", "the user ", "the logon ", "the program goes", "disc ",
      "box ",   "password window",      "refused, ", "power cut"};
  std::vector<std::string> lines;
  for (const Event& event : run.events)
    if (std::any_of(std::begin(told), std::end(told),
                    [&](const char* beginning) { return event.text.rfind(beginning, 0) == 0; }))
      lines.push_back(Duration(event.moment - run.played.begin) + "  " + event.text);
  return lines;
}

std::string Name(const RehearsedRun& run) {
  return run.product.name.empty() ? "(a product without a name)" : run.product.name + " " + run.product.version;
}

/// That a machine has the system which it has needs no word in a table by systems.
std::string WithoutSystem(const std::string& reason, const std::string& system) {
  const std::size_t at = reason.find("; the machine has " + system);
  return at == std::string::npos ? reason : reason.substr(0, at);
}

/// Which systems say the same, each with all of them.
std::string Reasons(const std::vector<RehearsedRun>& runs, const ComponentRow& row) {
  std::map<std::string, std::string> systems;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    if (row.cells[i] == nullptr) continue;
    const ComponentResult& cell = *row.cells[i];
    const std::string reason = WithoutSystem(cell.reason, runs[i].system);
    const std::string said = NameOf(cell.outcome) + (reason.empty() ? "" : ": " + reason);
    systems[said] += (systems[said].empty() ? "" : ", ") + runs[i].system;
  }
  std::string text;
  if (systems.size() < 2) return text;
  for (const auto& [said, where] : systems) text += "  " + row.name + ", " + where + ": " + said + "\n";
  return text;
}

std::string ShortName(const std::string& system) {
  return system.rfind("windows ", 0) == 0 ? system.substr(8) : system;
}

}  // namespace

std::string Duration(std::int64_t milliseconds) {
  const auto seconds = static_cast<long long>(milliseconds / 1000);
  char text[32];
  std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60, seconds % 60);
  return text;
}

std::string Headline(const RehearsedRun& run) {
  const int restarts = run.played.restarts;
  std::string text = !run.finished()         ? "not finished"
                     : run.product.succeeded ? (run.uninstall ? "uninstalled" : "succeeded")
                                             : "failed";
  text += ", exit code " + std::to_string(run.played.exitCode);
  if (restarts > 0) text += ", " + std::to_string(restarts) + (restarts == 1 ? " restart" : " restarts");
  text += ", after " + Duration(run.played.end - run.played.begin);
  return run.finished() ? text : text + "\n  " + run.played.unfinished;
}

std::string ReportRun(const RehearsedRun& run) {
  std::string text = Name(run) + " on " + run.system + ": " + Headline(run) + "\n\n" + Table(run.components);
  text += List("Why it failed", run.product.reasons);
  text += List("What happened", Course(run));
  text += List("Loose ends", run.looseEnds);
  if (!run.log.empty()) text += "\nLog: " + run.log + "\n";
  return text;
}

std::string ReportRuns(const std::vector<RehearsedRun>& runs) {
  constexpr std::size_t cell = 19;
  const std::vector<ComponentRow> rows = ComponentRows(runs);
  std::vector<std::string> names = {"exit code"};
  for (const ComponentRow& row : rows) names.push_back(row.name);
  const std::size_t width = Widest(names) + 2;
  std::string head(width, ' ');
  std::string exits = Padded("exit code", width);
  for (const RehearsedRun& run : runs) {
    head += Padded(ShortName(run.system), cell);
    exits += Padded(run.finished() ? std::to_string(run.played.exitCode) : "not finished", cell);
  }
  std::string text = Name(runs[0]) + "\n\n" + Trimmed(head);
  std::string reasons;
  for (const ComponentRow& row : rows) {
    std::string line = Padded(row.name, width);
    for (const ComponentResult* result : row.cells)
      line += Padded(result == nullptr ? "-" : NameOf(result->outcome), cell);
    text += Trimmed(line);
    reasons += Reasons(runs, row);
  }
  text += "\n" + Trimmed(exits);
  if (!reasons.empty()) text += "\nWhere they differ\n" + reasons;
  for (const RehearsedRun& run : runs) {
    if (!run.finished()) text += "\n" + run.system + ": " + run.played.unfinished + "\n";
    text += List(("Loose ends on " + run.system).c_str(), run.looseEnds);
  }
  return text;
}

}  // namespace qxia
