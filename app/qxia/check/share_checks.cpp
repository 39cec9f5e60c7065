// QX510 to QX524: room, shares and folders.
#include <algorithm>

#include "app/qxia/check/checks.h"
#include "app/qxia/check/machine_paths.h"
#include "base/numbers.h"
#include "base/record_keys.h"
#include "base/text.h"
#include "exec/csv.h"
#include "exec/disk_space.h"
#include "exec/machine_types.h"

namespace qxia::check {
namespace {

void CheckNeed(const MediaModel& media, const ComponentFact& component, const assistant::ShareCost& need,
               Findings& findings) {
  const int line = component.lineOf("Cost");
  if (!assistant::WholeNumericValue(need.cost))
    findings.add(512, *component.ini, line,
                 Told(need.cost) + " is no number: it counts as " +
                     assistant::NumberText(assistant::NumericValue(need.cost)) + ".");
  if (!need.share.empty() && !MachinePath(media, need.share) && !media.hasShare(need.share))
    findings.add(513, *component.ini, line,
                 "There is no share " + need.share + " in these media: drive C is looked at.");
}

void CheckCost(const MediaModel& media, const ComponentFact& component, Findings& findings) {
  const std::string cost = assistant::Given(component.value("Cost"));
  if (cost.empty() || cost == "0") return;
  const std::vector<std::string> fields = assistant::CsvFields(cost);
  const int line = component.lineOf("Cost");
  if (assistant::Contains(fields.front(), "=") || fields.size() == 1)
    findings.add(511, *component.ini, line, "The first need, " + fields.front() + ", is never checked.",
                 "Write Cost=0," + cost);
  if (fields.size() > 1 && !assistant::Trim(fields.back()).empty())
    findings.add(510, *component.ini, line, "The last need, " + fields.back() + ", is never checked.",
                 "Write Cost=" + cost + ",");
  for (const assistant::ShareCost& need : assistant::CheckedCosts(cost)) CheckNeed(media, component, need, findings);
}

bool Overlap(const std::string& a, const std::string& b) {
  if (assistant::AcceptsEveryMachine(a) || assistant::AcceptsEveryMachine(b)) return true;
  const std::vector<std::string> types = assistant::AcceptedTypes(a);
  const std::vector<std::string> others = assistant::AcceptedTypes(b);
  return std::any_of(types.begin(), types.end(), [&](const std::string& type) {
    return std::find(others.begin(), others.end(), type) != others.end();
  });
}

void CheckShareLine(const Disc& disc, const ShareFact& share, Findings& findings) {
  const SourceIni& file = *disc.sharesFile;
  const assistant::ShareLine& parsed = share.parsed;
  if (!parsed.defect.empty()) return findings.add(523, file, share.line, "The line " + parsed.defect + ".");
  if (parsed.hasBlanksBeforeQuote)
    findings.add(521, file, share.line, "Share " + parsed.share.name + " has blanks before a quote.");
  if (parsed.hasSurplusFields)
    findings.add(520, file, share.line, "Share " + parsed.share.name + " has surplus fields.");
  for (const ShareFact& other : disc.shares) {
    if (&other == &share) break;
    if (!other.parsed.defect.empty() || !assistant::EqualIgnoringCase(other.parsed.share.name, parsed.share.name) ||
        !Overlap(other.parsed.share.machineTypes, parsed.share.machineTypes))
      continue;
    findings.add(522, file, share.line,
                 "Share " + parsed.share.name + " stands in line " + std::to_string(other.line) +
                     " too, for the same machines.");
    break;
  }
}

void CheckFolders(const MediaModel& media, const Disc& disc, Findings& findings) {
  const IniSection* folders = disc.product == nullptr ? nullptr : disc.product->section("folders");
  if (folders == nullptr) return;
  for (const IniEntry& entry : folders->entries)
    if (entry.hasEquals && !entry.value.empty() && !MachinePath(media, entry.value))
      findings.add(524, *disc.product, entry.line,
                   "The folder " + entry.value + " is neither a full path nor on a share of these media.");
}

}  // namespace

void CheckShares(const MediaModel& media, Findings& findings) {
  for (const ComponentFact* component : media.components())
    if (component->section != nullptr) CheckCost(media, *component, findings);
  for (const Disc& disc : media.discs) {
    for (const ShareFact& share : disc.shares) CheckShareLine(disc, share, findings);
    CheckFolders(media, disc, findings);
  }
}

}  // namespace qxia::check
