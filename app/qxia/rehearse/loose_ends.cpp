#include "app/qxia/rehearse/loose_ends.h"

#include <algorithm>

#include "platform/simulated/command_line.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

constexpr Outcome NotDue[] = {Outcome::HeldBack,   Outcome::AlreadyInstalled, Outcome::Failed,
                              Outcome::NotReached, Outcome::AlreadyGone,      Outcome::Kept};

bool IsNotDue(Outcome outcome) {
  return std::find(std::begin(NotDue), std::end(NotDue), outcome) != std::end(NotDue);
}

bool IsProgram(const std::string& declaration) {
  return declaration.rfind("program ", 0) == 0 || declaration.rfind("package ", 0) == 0;
}

/// The declaration without its kind: a pattern or a path.
std::string PatternOf(const std::string& declaration) {
  return declaration.substr(declaration.find(' ') + 1);
}

/// Whether a declaration is about what installs the component, or about what removes it.
bool Installs(const ComponentRecord& component, const std::string& pattern) {
  const std::string file = simulated::FileName(component.value("Install"));
  return !file.empty() && simulated::ContainsText(pattern, file);
}

bool Removes(const ComponentRecord& component, const std::string& pattern) {
  const std::string command = component.value("UninstallCommandLine");
  return !command.empty() && simulated::ContainsText(command, pattern);
}

bool RanNothing(const RehearsedRun& run) {
  return std::all_of(run.components.begin(), run.components.end(),
                     [](const ComponentResult& result) { return result.outcome == Outcome::NotReached; });
}

/// Whether it was no wonder that this run did not use the declaration.
bool IsExcused(const RehearsedRun& run, const std::string& declaration) {
  if (!IsProgram(declaration)) return run.uninstall && declaration.rfind("password ", 0) == 0;
  const std::string pattern = PatternOf(declaration);
  bool isKnown = false;
  for (std::size_t i = 0; i < run.records.size(); ++i) {
    const bool installs = Installs(run.records[i], pattern);
    const bool removes = Removes(run.records[i], pattern);
    isKnown = isKnown || installs || removes;
    if ((installs || removes) && IsNotDue(run.components[i].outcome)) return true;
    if (run.uninstall ? installs && !removes : removes && !installs) return true;
  }
  return !isKnown && (run.uninstall || RanNothing(run) || !run.reachedLastDisc);
}

bool IsUnusedEverywhere(const std::vector<RehearsedRun>& runs, const std::string& declaration) {
  return std::all_of(runs.begin(), runs.end(), [&](const RehearsedRun& run) {
    return std::find(run.unused.begin(), run.unused.end(), declaration) != run.unused.end();
  });
}

}  // namespace

void FindLooseEnds(std::vector<RehearsedRun>& runs) {
  for (RehearsedRun& run : runs) {
    run.looseEnds.clear();
    for (const std::string& what : run.undeclared) run.looseEnds.push_back("ran undeclared: " + what);
    for (const std::string& what : run.unanswered) run.looseEnds.push_back("nobody answered: " + what);
    for (const std::string& what : run.unused)
      if (IsUnusedEverywhere(runs, what) && !IsExcused(run, what))
        run.looseEnds.push_back("declared and never used: " + what);
  }
}

}  // namespace qxia
