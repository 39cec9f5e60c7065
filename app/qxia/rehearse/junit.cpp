#include "app/qxia/rehearse/junit.h"

#include "app/qxia/html_page.h"

namespace qxia {
namespace {

struct Suite {
  std::string cases;
  int tests = 0;
  int failures = 0;
  int skipped = 0;

  void add(const RehearsedRun& run, const std::string& name, const std::string& inside) {
    ++tests;
    cases += "    <testcase classname=\"" + EscapedHtml(run.system) + "\" name=\"" + EscapedHtml(name) + "\"";
    cases += inside.empty() ? "/>\n" : ">" + inside + "</testcase>\n";
  }
};

std::string Message(const char* element, const std::string& text) {
  return std::string("<") + element + " message=\"" + EscapedHtml(text) + "\"/>";
}

void AddComponent(const RehearsedRun& run, const ComponentResult& component, Suite& suite) {
  const bool failed = component.outcome == Outcome::Failed;
  const bool skipped = component.outcome == Outcome::HeldBack || component.outcome == Outcome::NotReached;
  suite.failures += failed ? 1 : 0;
  suite.skipped += skipped ? 1 : 0;
  const std::string told = std::string(NameOf(component.outcome)) + ": " + component.reason;
  suite.add(run, component.name, failed ? Message("failure", told) : skipped ? Message("skipped", told) : "");
}

std::string RunFailure(const RehearsedRun& run) {
  if (!run.finished()) return run.played.unfinished;
  if (!run.looseEnds.empty()) return run.looseEnds[0];
  return run.played.exitCode == 0 ? "" : "exit code " + std::to_string(run.played.exitCode);
}

std::string SuiteOf(const RehearsedRun& run) {
  Suite suite;
  const std::string failure = RunFailure(run);
  suite.failures += failure.empty() ? 0 : 1;
  suite.add(run, "the run", failure.empty() ? "" : Message("failure", failure));
  for (const ComponentResult& component : run.components) AddComponent(run, component, suite);
  return "  <testsuite name=\"" + EscapedHtml(run.product.name + " on " + run.system) + "\" tests=\"" +
         std::to_string(suite.tests) + "\" failures=\"" + std::to_string(suite.failures) + "\" skipped=\"" +
         std::to_string(suite.skipped) + "\">\n" + suite.cases + "  </testsuite>\n";
}

}  // namespace

std::string JUnitReport(const std::vector<RehearsedRun>& runs) {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
  for (const RehearsedRun& run : runs) text += SuiteOf(run);
  return text + "</testsuites>\n";
}

}  // namespace qxia
