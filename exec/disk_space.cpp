#include "exec/disk_space.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/numbers.h"
#include "base/records.h"
#include "base/text.h"
#include "env/shares.h"
#include "exec/captions.h"
#include "exec/csv.h"

namespace {

constexpr const char* Source = "CheckDiskSpace";
constexpr double Kilobyte = 1024;
constexpr char DefaultDrive = 'C';

/// What a component needs on one share.
struct ShareCost {
  std::string share;
  std::string cost;  ///< kilobytes
};

ShareCost ParseCost(const std::string& field) {
  const std::size_t at = field.find('=');
  return {field.substr(0, at), at == std::string::npos ? std::string() : field.substr(at + 1)};
}

double RequiredBytes(Run& run, const ShareCost& cost) {
  if (!WholeNumericValue(cost.cost)) {
    run.log.Log(Source, 0,
                "Cost \"" + cost.cost + "\" of share " + cost.share + " is no number and counts as " +
                    NumberText(NumericValue(cost.cost)) + ". Correct Cost in section [" + run.component.name + "] of " +
                    ComponentValue(run, "IniPath") + ".",
                false, EntryType::Warning);
  }
  return NumericValue(cost.cost) * Kilobyte;
}

/// The drive that holds the share; a share that is not known anywhere is looked for on the default drive. What is on
/// the network is on no drive.
char DriveOfShare(Run& run, const std::string& share) {
  const std::string path = ResolveQXSharePath(run, share);
  const bool unknown = path == share && !Contains(path, ":");
  return path.empty() || unknown ? DefaultDrive : UpperCase(path).front();
}

/// A drive without a row in the drive table has no room.
double AvailableBytes(const Run& run, char drive) {
  const auto row = std::find_if(run.driveTable.begin(), run.driveTable.end(),
                                [drive](const DriveRow& candidate) { return candidate.letter == drive; });
  return row == run.driveTable.end() ? 0 : row->freeBytes;
}

void RequireRoom(Run& run, const ShareCost& cost) {
  run.log.Log(Source, 0, "Cost check - share=" + cost.share + " cost=" + cost.cost);
  const double required = RequiredBytes(run, cost);
  const char drive = DriveOfShare(run, cost.share);
  const double available = AvailableBytes(run, drive);
  if (available > required) return;
  run.log.Log(Source, 0,
              "Available space=" + NumberText(available) + ", required space=" + NumberText(std::floor(required)));
  throw modErrorBase::MakeError(6093, {std::string(1, drive) + ":"}, Source);
}

}  // namespace

bool CheckDiskSpace(Run& run) {
  return Guarded(run, Source, [&] {
    run.window.StatusLine("Checking Disk space available");
    const std::string cost = GivenComponentValue(run, "Cost");
    if (cost.empty()) return true;
    // The field behind the last comma is never checked, and with fewer than two commas nothing is: media rely on it.
    const auto commas = static_cast<int>(std::count(cost.begin(), cost.end(), ','));
    for (int field = 2; field <= commas; ++field) RequireRoom(run, ParseCost(ParseCsv(cost, field)));
    run.window.StatusLine(modLanguage::Text(run, modLanguage::Caption::CheckingDriveSpace));
    return true;
  });
}
