// Comments of the media that permit a finding on the line below them.
#include <algorithm>

#include "app/qxia/check/checks.h"
#include "app/qxia/check/rules.h"
#include "base/text.h"

namespace qxia::check {
namespace {

constexpr std::string_view Mark = "qxia: allow ";

struct Allowance {
  const SourceIni* file;
  int line;       ///< of the comment
  int permitted;  ///< the line below it and below other such comments
  int rule;
  bool hasReason;
  bool isAtStart = false;  ///< the file begins with it, or with others like it
  bool isUsed = false;

  bool permits(const Finding& finding) const {
    // What is about a whole file stands on its first line, where the comment itself stands.
    return finding.file == file && finding.rule == rule &&
           (finding.line == permitted || (finding.line == 1 && isAtStart));
  }
};

/// "; qxia: allow QX105 reason" taken apart; rule 0 for any other line.
Allowance Parse(const std::string& line) {
  Allowance allowance{nullptr, 0, 0, 0, false};
  if (line.empty() || line.front() != ';') return allowance;
  const std::string text = assistant::Trim(line.substr(1));
  if (!assistant::StartsWithIgnoringCase(text, Mark)) return allowance;
  const std::string rest = assistant::Trim(text.substr(Mark.size()));
  const std::size_t blank = std::min(rest.find(' '), rest.size());
  allowance.rule = RuleNumber(assistant::UpperCase(rest.substr(0, blank)));
  if (allowance.rule == 0) allowance.rule = -1;
  allowance.hasReason = !assistant::Trim(rest.substr(blank)).empty();
  return allowance;
}

void CollectAllowances(const SourceIni& file, std::vector<Allowance>& allowances) {
  std::vector<Allowance> block;
  int number = 0;
  bool first = true;
  for (const std::string& line : file.lines()) {
    ++number;
    Allowance allowance = Parse(line);
    if (allowance.rule != 0) {
      allowance.file = &file;
      allowance.line = number;
      allowance.isAtStart = first;
      block.push_back(allowance);
      continue;
    }
    first = false;
    for (Allowance& above : block) above.permitted = number;
    allowances.insert(allowances.end(), block.begin(), block.end());
    block.clear();
  }
  allowances.insert(allowances.end(), block.begin(), block.end());
}

void TellUseless(const Allowance& allowance, Findings& findings) {
  const bool isRule = FindRule(allowance.rule) != nullptr;
  const std::string name = isRule ? RuleName(allowance.rule) : "this";
  if (!allowance.isUsed) {
    const std::string why =
        isRule ? ": there is no such finding on the line below." : ": there is no rule of that name.";
    findings.add(901, *allowance.file, allowance.line, "The comment allows " + name + why);
  } else if (!allowance.hasReason) {
    findings.add(902, *allowance.file, allowance.line, "The comment allows " + name + " without a reason.");
  }
}

}  // namespace

int ApplyAllowances(const MediaModel& media, Findings& findings) {
  std::vector<Allowance> allowances;
  for (const Disc& disc : media.discs)
    for (const auto& [path, file] : disc.sources) CollectAllowances(*file, allowances);
  int permitted = 0;
  std::vector<Finding> kept;
  for (const Finding& finding : findings.all()) {
    bool isPermitted = false;
    for (Allowance& allowance : allowances) {
      if (!allowance.permits(finding)) continue;
      allowance.isUsed = isPermitted = true;
    }
    isPermitted ? static_cast<void>(++permitted) : kept.push_back(finding);
  }
  findings.all() = kept;
  for (const Allowance& allowance : allowances) TellUseless(allowance, findings);
  return permitted;
}

}  // namespace qxia::check
