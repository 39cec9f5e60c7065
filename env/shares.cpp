#include "env/shares.h"

#include "base/ini.h"
#include "base/not_built.h"
#include "base/paths.h"
#include "base/text.h"

namespace {

std::string SharesFile(const Run& run) {
  return Joined(FolderPart(run.appIniPath), "Config\\Shares.csv");
}

}  // namespace

void ValidateShares(Run& run) {
  if (run.uninstall || !run.fso.FileExists(SharesFile(run))) return;
  LogNothingDone(run, "ValidateShares", "Share definitions in " + SharesFile(run));
}

void CreateFolders(Run& run) {
  if (modINI::IsValidIniSection(run, "folders", run.productIniPath)) {
    LogNothingDone(run, "CreateFolders", "Folders of section [folders] in " + run.productIniPath);
  }
}

std::int32_t CreateShares(Run& run) {
  run.window.Status("Creating 'Shares'");
  if (!run.fso.FileExists(SharesFile(run))) return 0;
  LogNothingDone(run, "CreateShares", "Shares of " + SharesFile(run));
  return -1;
}

void MapDriveIfRequired(Run& run) {
  if (run.productIniPath.empty() || !run.mappedDrive.empty()) return;
  const std::string drive =
      modINI::GetIniString(run, "Connection", "BuildServerDriveMapping", "", Unquoted(run.productIniPath), true);
  if (!drive.empty()) LogNothingDone(run, "MapDriveIfRequired", "Mapping of drive " + drive);
}

std::string ResolveQXSharePath([[maybe_unused]] Run& run, const std::string& path) {
  return path;
}
