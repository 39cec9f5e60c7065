#include "exec/disk_space.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "base/procedure.h"
#include "base/share_paths.h"
#include "base/text.h"
#include "exec/captions.h"
#include "exec/csv.h"

namespace assistant {
namespace {

constexpr double Kilobyte = 1024;
constexpr char DefaultDrive = 'C';

ShareCost ParseCost(const std::string& field) {
  const std::size_t at = field.find('=');
  return {field.substr(0, at), at == std::string::npos ? std::string() : field.substr(at + 1)};
}

double RequiredBytes(const Procedure& here, const Component& component, const ShareCost& cost) {
  if (!WholeNumericValue(cost.cost)) {
    here.warn("Cost \"" + cost.cost + "\" of share " + cost.share + " is no number and counts as " +
              NumberText(NumericValue(cost.cost)) + ". Correct Cost in section [" + component.name + "] of " +
              component.iniPath + ".");
  }
  return NumericValue(cost.cost) * Kilobyte;
}

/// The drive that holds the share; a share that is not known anywhere is looked for on the default drive. What is on
/// the network is on no drive.
char DriveOfShare(const ShareResolver& resolver, const std::string& share) {
  const std::string path = ResolveQXSharePath(resolver, share);
  const bool unknown = path == share && !Contains(path, ":");
  return path.empty() || unknown ? DefaultDrive : UpperCase(path).front();
}

/// A drive without a row in the drive table has no room.
double AvailableBytes(const std::vector<DriveRow>& drives, char drive) {
  const auto row = std::find_if(drives.begin(), drives.end(),
                                [drive](const DriveRow& candidate) { return candidate.letter == drive; });
  return row == drives.end() ? 0 : row->freeBytes;
}

void RequireRoom(const Run& run, const Procedure& here, const Component& component, const ShareCost& cost) {
  here.action("Cost check - share=" + cost.share + " cost=" + cost.cost);
  const double required = RequiredBytes(here, component, cost);
  const char drive = DriveOfShare(run.shareResolver(), cost.share);
  const double available = AvailableBytes(run.facts.drives, drive);
  if (available > required) return;
  here.action("Available space=" + NumberText(available) + ", required space=" + NumberText(std::floor(required)));
  throw here.failure(6093, {std::string(1, drive) + ":"});
}

}  // namespace

std::vector<ShareCost> CheckedCosts(const std::string& cost) {
  // The field behind the last comma is never checked, and with fewer than two commas nothing is: media rely on it.
  const auto commas = static_cast<int>(std::count(cost.begin(), cost.end(), ','));
  std::vector<ShareCost> costs;
  for (int field = 2; field <= commas; ++field) costs.push_back(ParseCost(ParseCsv(cost, field)));
  return costs;
}

bool CheckDiskSpace(const Run& run, const Component& component) {
  const Procedure here(run.services.log, "CheckDiskSpace");
  return here.guard([&] {
    run.services.window.statusLine("Checking Disk space available");
    const std::string cost = Given(component.cost);
    if (cost.empty()) return true;
    for (const ShareCost& checked : CheckedCosts(cost)) RequireRoom(run, here, component, checked);
    run.services.window.statusLine(modLanguage::Text(modLanguage::Caption::CheckingDriveSpace));
    return true;
  });
}

}  // namespace assistant
