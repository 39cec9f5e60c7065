#include "base/log_setup.h"

#include <string>

#include "base/ini.h"
#include "base/paths.h"
#include "base/text.h"

namespace {

constexpr const char* DefaultLogFolder = "c:\\program files\\Tarvel\\Installation\\";

/// Where a run's log lies and what its parts are called.
struct LogPlace {
  std::string folder;
  std::string file;
  std::string prefix;  ///< of the folders beside the log
  std::string remedy;  ///< when the folder cannot be made
};

LogPlace UninstallPlace(const Run& run) {
  const std::string folder = DefaultLogFolder + std::string(Title) + "\\" + run.uninstallProduct;
  return {folder, folder + "\\" + Title + " Uninstall.html", "Uninstall ",
          "Make it a folder that this user may write to."};
}

LogPlace InstallPlace(Run& run) {
  const std::string given =
      Unquoted(Trim(modINI::GetIniString(run, "Product", "LogFilePath", "", run.appIniPath, true)));
  const std::string folder = Joined(given.empty() ? DefaultLogFolder : given, Title) + "\\" + run.productName;
  return {
      folder, folder + "\\" + Title + ".html", "",
      "Give section [Product] of " + run.appIniPath + " a LogFilePath (and a Name) of which that folder can be made."};
}

void UseFolders(Run& run, const std::string& folder, const std::string& prefix) {
  run.logFolders = {folder + "\\" + prefix + "MSI Log Files", folder + "\\" + prefix + "QXIA Archive Logs"};
}

bool MadeFolder(Run& run, const LogPlace& place) {
  try {
    run.fso.CreateFolder(place.folder);
    return true;
  } catch (const Error& failure) {
    run.log.Log("SetUpLog", 0,
                "The log folder " + place.folder + " could not be made (" + failure.text() + "); this log is kept at " +
                    run.log.DefaultLogFilename() + " instead. " + place.remedy,
                false, EntryType::Warning);
    return false;
  }
}

/// A resumed run goes on in the log that it finds; any other archives it first and starts afresh. A log that could not
/// be archived is gone on with.
void MakeRoomForLog(Run& run) {
  if (run.rebooted || !run.fso.FileExists(run.log.LogFilename())) return;
  if (!run.log.ArchiveLogFile(run.logFolders.archive)) return;
  try {
    run.fso.DeleteFileForced(run.log.LogFilename());
  } catch (const Error& failure) {
    run.log.Log("SetUpLog", failure);
  }
}

}  // namespace

void SetUpLog(Run& run) {
  const LogPlace place = run.uninstall ? UninstallPlace(run) : InstallPlace(run);
  UseFolders(run, place.folder, place.prefix);
  if (MadeFolder(run, place)) {
    run.log.LogFilename(place.file);
    MakeRoomForLog(run);
  } else {
    UseFolders(run, run.programFolder, place.prefix);
  }
  run.log.ReleaseEntries();
}
