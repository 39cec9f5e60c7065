#include "app/qxia/rehearse/rehearse.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "app/qxia/rehearse/html.h"
#include "app/qxia/rehearse/json.h"
#include "app/qxia/rehearse/junit.h"
#include "app/qxia/rehearse/loose_ends.h"
#include "app/qxia/rehearse/rehearsals.h"
#include "app/qxia/rehearse/report.h"
#include "app/qxia/rehearse/scratch_folder.h"
#include "app/qxia/rehearse/settings.h"
#include "app/qxia/rehearse/sweep.h"
#include "platform/simulated/host.h"

namespace qxia {
namespace {

constexpr int NotFinished = 5;
constexpr int Differs = 1;
constexpr int WorstFirst[] = {1, 4, 3, 2, 0};

void Print(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

int ExitCodeOf(const std::vector<RehearsedRun>& runs) {
  for (const RehearsedRun& run : runs)
    if (!run.finished() || !run.looseEnds.empty()) return NotFinished;
  for (const int code : WorstFirst)
    if (std::any_of(runs.begin(), runs.end(), [&](const RehearsedRun& run) { return run.played.exitCode == code; }))
      return code;
  return runs[0].played.exitCode;
}

int TellDifferences(const std::vector<std::string>& differences) {
  for (const std::string& difference : differences) std::fprintf(stderr, "qxia: differs: %s\n", difference.c_str());
  return differences.empty() ? 0 : Differs;
}

bool OnTerminal() {
  return isatty(STDERR_FILENO) != 0;
}

void ShowProgress(const std::string& text) {
  if (OnTerminal()) std::fprintf(stderr, "\r%-30s\r", text.c_str());
}

std::string Quoted(const std::string& word) {
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

/// The command that repeats one point of a sweep.
std::string RepeatCommand(const Arguments& arguments, const std::string& fault) {
  std::string command = "qxia rehearse";
  for (const std::string& medium : arguments.operands()) command += " " + Quoted(medium);
  for (const Option& option : RehearseOptions) {
    const std::string name = option.name;
    if (option.value == nullptr || name == "--cut-power" || name == "--fail") continue;
    for (const std::string& value : arguments.all(name)) command += " " + name + " " + Quoted(value);
  }
  return command + " " + fault;
}

/// The operation of a point with its number among its like.
std::string Numbered(const std::vector<std::string>& operations, int point) {
  const auto last = operations.begin() + point;
  const std::string name = last[-1].substr(0, last[-1].find(' '));
  const auto count = std::count_if(operations.begin(), last, [&](const std::string& operation) {
    return operation.substr(0, operation.find(' ')) == name;
  });
  return name + ":" + std::to_string(count);
}

int TellSweep(const Arguments& arguments, const Sweep& sweep, const SweepResult& result) {
  if (arguments.has("--json")) {
    Print(ToJson(result).dump(1) + "\n");
    return result.failed.empty() ? 0 : Differs;
  }
  Print(std::to_string(result.points) + (result.points == 1 ? " point, " : " points, ") +
        std::to_string(result.failed.size()) + " did not recover\n");
  for (const SweepPoint& point : result.failed) {
    const std::string fault = arguments.has("--cut-power") ? "--cut-power " + std::to_string(point.number)
                                                           : "--fail " + Numbered(sweep.operations(), point.number);
    Print("\n" + std::to_string(point.number) + ": " + point.operation + "\n  left: " + point.left + "\n  " +
          RepeatCommand(arguments, fault) + "\n");
  }
  return result.failed.empty() ? 0 : Differs;
}

int SweepMedia(const Arguments& arguments, const RehearsalSettings& settings) {
  if (settings.systems.size() != 1) throw UsageError("a sweep is about one system: write --on once, with one name");
  Rehearsals rehearsals(settings);
  const ScratchFolder folder;
  const Sweep sweep(settings, rehearsals.machineFileFor(settings.systems[0]), folder.path());
  const std::string fail = arguments.text("--fail");
  if (fail == "list") {
    Print(ListOperations(sweep.operations()));
    return 0;
  }
  const bool cuts = arguments.has("--cut-power");
  const std::vector<int> points = cuts ? sweep.pointsToCut(arguments.text("--cut-power")) : sweep.pointsToFail(fail);
  const SweepResult result = sweep.run(cuts ? Fault::PowerCut : Fault::Failure, points, [&](int done) {
    ShowProgress(std::to_string(done) + " of " + std::to_string(points.size()));
  });
  ShowProgress("");
  return TellSweep(arguments, sweep, result);
}

std::vector<RehearsedRun> RehearseAll(const RehearsalSettings& settings) {
  Rehearsals rehearsals(settings);
  std::vector<RehearsedRun> runs;
  for (const std::string& system : settings.systems) {
    ShowProgress(system);
    runs.push_back(rehearsals.rehearse(system));
  }
  ShowProgress("");
  FindLooseEnds(runs);
  for (const std::string& link : rehearsals.leftOut())
    std::fprintf(stderr, "qxia: note: %s leads out of the media and is not followed\n", link.c_str());
  return runs;
}

void WriteReports(const Arguments& arguments, const std::vector<RehearsedRun>& runs) {
  if (arguments.has("--html")) simulated::WriteHostFile(arguments.text("--html"), HtmlPage(runs));
  if (arguments.has("--junit")) simulated::WriteHostFile(arguments.text("--junit"), JUnitReport(runs));
  if (arguments.has("--json")) {
    Print(ToJson(runs).dump(1) + "\n");
  } else {
    Print(ToUtf8(runs.size() == 1 ? ReportRun(runs[0]) : ReportRuns(runs)));
  }
}

}  // namespace

int RehearseMedia(const Arguments& arguments) {
  const RehearsalSettings settings = ReadSettings(arguments);
  if (arguments.has("--cut-power") || arguments.has("--fail")) return SweepMedia(arguments, settings);
  const std::vector<RehearsedRun> runs = RehearseAll(settings);
  WriteReports(arguments, runs);
  const std::string expected = arguments.text("--expect");
  const int differs = expected.empty() ? 0 : TellDifferences(Differences(runs, expected));
  const int code = ExitCodeOf(runs);
  return code == NotFinished || differs == 0 ? code : differs;
}

}  // namespace qxia
