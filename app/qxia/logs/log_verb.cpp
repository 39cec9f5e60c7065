#include "app/qxia/logs/log_verb.h"

#include <cstdio>

#include "app/qxia/logs/log_file.h"
#include "app/qxia/logs/log_page.h"
#include "app/qxia/text_table.h"
#include "platform/simulated/host.h"

namespace qxia {
namespace {

using logs::LogFile;
using logs::LoggedComponent;
using logs::LoggedRun;

void PrintPackageLines(const LoggedRun& run) {
  for (const LoggedComponent& component : run.components) {
    const logs::PackageLog& log = component.packageLog;
    if (log.path.empty()) continue;
    if (log.line == 0) {
      std::printf("  %s: %s has no line with \"Return value 3\"\n", ToUtf8(component.name).c_str(), log.path.c_str());
    } else {
      std::printf("  %s: %s:%d: %s\n", ToUtf8(component.name).c_str(), log.path.c_str(), log.line,
                  ToUtf8(log.text).c_str());
    }
  }
}

void PrintRun(const LoggedRun& run) {
  std::printf("%s\n", logs::Headline(run).c_str());
  std::printf("  %s\n", logs::CourseOf(run).c_str());
  for (const std::string& reason : run.product.reasons) std::printf("  ! %s\n", ToUtf8(reason).c_str());
  std::vector<std::vector<std::string>> table = {{"Row", "Number", "Component", "Kind", "Outcome", "Reason"}};
  for (const LoggedComponent& component : run.components) {
    table.push_back({component.row == 0 ? "-" : std::to_string(component.row), std::to_string(component.sequence),
                     ToUtf8(component.name), component.kind, NameOf(component.outcome), ToUtf8(component.reason)});
  }
  if (!run.components.empty()) std::printf("\n%s", TextTable(table, "  ").c_str());
  PrintPackageLines(run);
}

void PrintText(const std::vector<LogFile>& files) {
  for (const LogFile& file : files) {
    if (file.log.runs.empty()) continue;
    std::printf("%s\n", file.path.c_str());
    for (const LoggedRun& run : file.log.runs) PrintRun(run);
    std::printf("\n");
  }
}

}  // namespace

int ShowLogs(const Arguments& arguments) {
  if (arguments.operands().empty()) throw UsageError("no FILE given: write the logs (*.html) to read");
  const std::string page = arguments.text("--html");
  std::vector<logs::Problem> problems;
  std::vector<LogFile> files;
  const logs::Keep keep = page.empty() ? logs::Keep::Nothing : logs::Keep::Rows;
  for (const std::string& path : arguments.operands()) files.push_back(logs::ReadLogFile(path, keep, problems));
  if (!page.empty()) simulated::WriteHostFile(page, logs::LogPage(files));
  if (arguments.has("--json")) {
    std::fputs(logs::LogsAsJson(files, problems).c_str(), stdout);
  } else {
    PrintText(files);
  }
  for (const logs::Problem& problem : problems) std::fprintf(stderr, "qxia: %s\n", problem.text.c_str());
  return problems.empty() ? 0 : 1;
}

}  // namespace qxia
