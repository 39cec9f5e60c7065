#include "app/qxia/rehearse/rehearse.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "app/qxia/rehearse/json.h"
#include "app/qxia/rehearse/loose_ends.h"
#include "app/qxia/rehearse/rehearsals.h"
#include "app/qxia/rehearse/report.h"
#include "app/qxia/rehearse/settings.h"
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

}  // namespace

int RehearseMedia(const Arguments& arguments) {
  const RehearsalSettings settings = ReadSettings(arguments);
  const std::string expected = arguments.text("--expect");
  Rehearsals rehearsals(settings);
  std::vector<RehearsedRun> runs;
  for (const std::string& system : settings.systems) {
    if (isatty(STDERR_FILENO) != 0) std::fprintf(stderr, "\r%-20s", system.c_str());
    runs.push_back(rehearsals.rehearse(system));
  }
  if (isatty(STDERR_FILENO) != 0) std::fprintf(stderr, "\r%-20s\r", "");
  FindLooseEnds(runs);
  for (const std::string& link : rehearsals.leftOut())
    std::fprintf(stderr, "qxia: note: %s leads out of the media and is not followed\n", link.c_str());
  if (arguments.has("--json")) {
    Print(ToJson(runs).dump(1) + "\n");
  } else {
    Print(runs.size() == 1 ? ReportRun(runs[0]) : ReportRuns(runs));
  }
  const int differs = expected.empty() ? 0 : TellDifferences(Differences(runs, expected));
  const int code = ExitCodeOf(runs);
  return code == NotFinished || differs == 0 ? code : differs;
}

}  // namespace qxia
