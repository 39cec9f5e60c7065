// The program's own command line.
#include "core/command_line.h"
#include "core/run_stops.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  using namespace assistant;
  const std::string text = ArgumentText(input, "C:\\QX\\QX Installation Assistant.exe");
  Require(text.size() <= input.size(), "the arguments are a part of the command line");
  AsksForHelp(text);
  GetUninstallProduct(text);
  Bench& bench = SharedBench();
  bench.run.state = {};
  try {
    GetCommandLine(bench.run, text);
  } catch (const RunStops&) {
    Require(bench.run.isUninstall(), "only an uninstall is refused");
  }
  bench.run.services.log.logToFile(false);
}
