#include "app/qxia/logs/fleet_report.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <tuple>

#include "app/qxia/text_table.h"

namespace qxia::logs {
namespace {

using Json = nlohmann::json;

constexpr const char* CsvEnd = "\r\n";

std::string Joined(const std::vector<std::string>& parts, const char* separator) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
  return text;
}

std::string Plural(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

/// The component that a run which did not come to its end was at; "" when it was at none.
std::string InWork(const LoggedRun& run) {
  std::string name;
  for (const LoggedComponent& component : run.components)
    if (component.outcome == Outcome::NotReached && component.row != 0) name = component.name;
  return name;
}

std::string Standing(const Fleet& fleet, const char* outcome, const char* title) {
  std::vector<std::vector<std::string>> rows;
  for (const FleetRun& run : fleet.runs) {
    if (run.outcome != outcome) continue;
    const std::string inWork = ToUtf8(InWork(run.run));
    const char* word = run.run.end == RunEnd::Waiting ? "since " : "last row ";
    const std::string time = run.run.lastTime.empty() ? "" : word + ShownTime(run.run.lastTime);
    rows.push_back({run.machine, run.file.empty() ? "no log that could be read" : ProductOf(run), time,
                    inWork.empty() ? "" : "at " + inWork});
  }
  return rows.empty() ? "" : "\n" + std::string(title) + "\n" + TextTable(rows, "  ");
}

std::string FailuresText(const Fleet& fleet) {
  std::string text;
  for (const FleetFailure& failure : fleet.failures) {
    const std::string component = failure.component.empty() ? "the run itself" : failure.component;
    const std::string time = failure.newest.empty() ? "" : ", newest " + ShownTime(failure.newest);
    text += "  " + component + " (" + failure.product + "): " + failure.reason + "\n      " +
            Plural(failure.machines.size(), "machine", "machines") + time + ": " + Joined(failure.machines, ", ") +
            "\n";
    const PackageLog& log = failure.packageLog;
    if (log.line != 0) text += "      " + log.path + ":" + std::to_string(log.line) + ": " + ToUtf8(log.text) + "\n";
  }
  return text.empty() ? "" : "\nFailures, newest first\n" + text;
}

std::string CsvField(std::string text) {
  if (!text.empty() && std::string("=+-@\t\r").find(text.front()) != std::string::npos) text.insert(0, "'");
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char character : text) quoted += character == '"' ? "\"\"" : std::string(1, character);
  return quoted + "\"";
}

std::vector<std::string> Utf8Reasons(const LoggedRun& run) {
  std::vector<std::string> reasons;
  reasons.reserve(run.product.reasons.size());
  for (const std::string& reason : run.product.reasons) reasons.push_back(ToUtf8(reason));
  return reasons;
}

std::vector<std::string> FailedComponents(const LoggedRun& run) {
  std::vector<std::string> names;
  for (const LoggedComponent& component : run.components)
    if (component.outcome == Outcome::Failed) names.push_back(ToUtf8(component.name));
  return names;
}

Json MachineToJson(const FleetRun& run) {
  return {{"name", run.machine},
          {"product", ToUtf8(run.run.product.name)},
          {"version", ToUtf8(run.run.product.version)},
          {"uninstall", run.run.direction == Direction::Uninstall},
          {"outcome", run.outcome},
          {"reasons", Utf8Reasons(run.run)},
          {"restarts", run.run.restarts},
          {"begin", run.run.firstTime},
          {"end", run.run.lastTime},
          {"file", run.file},
          {"components", ComponentsToJson(run.run)}};
}

Json FailureToJson(const FleetFailure& failure) {
  Json json = {{"product", failure.product},
               {"component", failure.component},
               {"reason", failure.reason},
               {"newest", failure.newest},
               {"machines", failure.machines}};
  const PackageLog& log = failure.packageLog;
  if (!log.path.empty()) json["packageLog"] = {{"path", log.path}, {"line", log.line}, {"text", ToUtf8(log.text)}};
  return json;
}

}  // namespace

std::vector<FleetLine> LinesOf(const Fleet& fleet) {
  // What has no product comes last.
  std::map<std::tuple<bool, std::string, std::size_t>, FleetLine> lines;
  for (const FleetRun& run : fleet.runs) {
    const std::string product = run.outcome == Unreadable ? "" : ProductOf(run);
    const auto* place = std::find(std::begin(MachineOutcomes), std::end(MachineOutcomes), run.outcome);
    FleetLine& line = lines[{product.empty(), product, static_cast<std::size_t>(place - std::begin(MachineOutcomes))}];
    line.product = product;
    line.outcome = run.outcome;
    line.machines.push_back(run.machine);
  }
  std::vector<FleetLine> sorted;
  sorted.reserve(lines.size());
  for (auto& [key, line] : lines) sorted.push_back(std::move(line));
  return sorted;
}

std::string FleetText(const Fleet& fleet) {
  std::vector<std::vector<std::string>> table = {{"Product", "Outcome", "Count", "Machines"}};
  for (const FleetLine& line : LinesOf(fleet)) {
    table.push_back({line.product.empty() ? "-" : line.product, line.outcome, std::to_string(line.machines.size()),
                     Joined(line.machines, ", ")});
  }
  std::string text = Plural(fleet.machines, "machine", "machines") + "\n\n" + TextTable(table);
  text += Standing(fleet, "waiting", "Waiting for a restart");
  text += Standing(fleet, "broken off", "Broken off");
  text += Standing(fleet, Unreadable, "Nothing readable");
  text += FailuresText(fleet);
  if (!fleet.passedOver.empty()) text += "\nPassed over, as they are no logs of the program\n";
  for (const std::string& path : fleet.passedOver) text += "  " + path + "\n";
  return text;
}

std::string FleetCsv(const Fleet& fleet) {
  std::string csv =
      std::string("machine,product,version,direction,outcome,restarts,begin,end,failed,reasons,file") + CsvEnd;
  for (const FleetRun& run : fleet.runs) {
    const bool uninstall = run.run.direction == Direction::Uninstall;
    const std::string fields[] = {run.machine,
                                  ToUtf8(run.run.product.name),
                                  ToUtf8(run.run.product.version),
                                  uninstall ? "uninstall" : "install",
                                  run.outcome,
                                  std::to_string(run.run.restarts),
                                  ShownTime(run.run.firstTime),
                                  ShownTime(run.run.lastTime),
                                  Joined(FailedComponents(run.run), "; "),
                                  Joined(Utf8Reasons(run.run), "; "),
                                  run.file};
    std::string line;
    for (const std::string& field : fields) line += (&field == &fields[0] ? "" : ",") + CsvField(field);
    csv += line + CsvEnd;
  }
  return csv;
}

std::string FleetJson(const Fleet& fleet) {
  Json counts = Json::object();
  for (const char* outcome : MachineOutcomes) counts[outcome] = 0;
  Json machines = Json::array();
  for (const FleetRun& run : fleet.runs) {
    machines.push_back(MachineToJson(run));
    counts[run.outcome] = counts[run.outcome].get<int>() + 1;
  }
  Json failures = Json::array();
  for (const FleetFailure& failure : fleet.failures) failures.push_back(FailureToJson(failure));
  return JsonText({{"format", 1},
                   {"machines", machines},
                   {"counts", counts},
                   {"failures", failures},
                   {"problems", ToJson(fleet.problems)},
                   {"passedOver", fleet.passedOver}});
}

}  // namespace qxia::logs
