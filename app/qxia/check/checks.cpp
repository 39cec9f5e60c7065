#include "app/qxia/check/checks.h"

#include <algorithm>
#include <tuple>

#include "app/qxia/check/rules.h"

namespace qxia::check {
namespace {

constexpr void (*Checks[])(const MediaModel&, Findings&) = {
    CheckText,         CheckKeys,   CheckFiles,  CheckComponents, CheckScripts, CheckVersions,   CheckConditions,
    CheckMachineTypes, CheckCopies, CheckShares, CheckRemoval,    CheckDiscs,   CheckSilentRuns,
};

auto Rank(const Finding& finding) {
  return std::tuple(FindRule(finding.rule)->severity, finding.file->shown(), finding.line, finding.rule, finding.text);
}

}  // namespace

Findings CheckMedia(const MediaModel& media, int& permitted) {
  Findings findings;
  for (const auto check : Checks) check(media, findings);
  permitted = ApplyAllowances(media, findings);
  std::vector<Finding>& all = findings.all();
  std::sort(all.begin(), all.end(), [](const Finding& a, const Finding& b) { return Rank(a) < Rank(b); });
  const auto same = [](const Finding& a, const Finding& b) { return Rank(a) == Rank(b); };
  all.erase(std::unique(all.begin(), all.end(), same), all.end());
  return findings;
}

}  // namespace qxia::check
