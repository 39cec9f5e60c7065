// The log reader.
#include "app/qxia/logs/log_file.h"
#include "app/qxia/logs/log_page.h"
#include "app/qxia/logs/text_files.h"
#include "nlohmann/json.hpp"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  using namespace qxia::logs;
  const std::string text = DecodedText(input);
  LogFile file{"log.html", ReadLogText(text, Keep::Rows)};
  Require(!IsLog(text) || !file.log.runs.empty(), "a log tells of a run");
  for (const LoggedRun& run : file.log.runs) {
    Require(!OutcomeOf(run).empty(), "a run has an outcome");
    JsonText(ComponentsToJson(run));
    ShownTime(run.firstTime);
  }
  LogPage({file});
}
