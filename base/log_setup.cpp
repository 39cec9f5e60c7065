#include "base/log_setup.h"

#include <string>

#include "base/ini.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"

namespace {

constexpr const char* DefaultLogFolder = "c:\\program files\\Tarvel\\Installation\\";

std::string InstallLogFolder(Run& run) {
  const std::string given =
      Unquoted(Trim(modINI::GetIniString(run, "Product", "LogFilePath", "", run.appIniPath, true)));
  return Joined(given.empty() ? DefaultLogFolder : given, Title) + "\\" + run.productName;
}

void UseFolders(Run& run, const std::string& folder, const std::string& prefix) {
  run.logFolders = {folder + "\\" + prefix + "MSI Log Files", folder + "\\" + prefix + "QXIA Archive Logs"};
}

std::string Remedy(const Run& run, const std::string& folder) {
  if (run.uninstall) return "Make " + folder + " a folder that this user may write to.";
  return "Correct LogFilePath in section [Product] of " + run.appIniPath + ".";
}

bool MadeFolder(Run& run, const std::string& folder) {
  try {
    run.fso.CreateFolder(folder);
    return true;
  } catch (const Error& failure) {
    run.log.Log("SetUpLog", 0,
                "The log folder " + folder + " could not be made (" + failure.text() + "); this log is kept at " +
                    run.log.DefaultLogFilename() + " instead. " + Remedy(run, folder),
                false, EntryType::Warning);
    return false;
  }
}

/// A resumed run goes on in the log that it finds; any other archives it first and starts afresh.
void MakeRoomForLog(Run& run) {
  const bool resumed = !run.uninstall && modRegistry::ReadOrEmpty(run, ProductsKey, "Rebooted") == TrueOrFalse(true);
  if (resumed || !run.fso.FileExists(run.log.LogFilename())) return;
  run.log.ArchiveLogFile(run.logFolders.archive);
  try {
    run.fso.DeleteFileForced(run.log.LogFilename());
  } catch (const Error& failure) {
    run.log.Log("SetUpLog", failure);
  }
}

}  // namespace

void SetUpLog(Run& run) {
  const std::string folder =
      run.uninstall ? DefaultLogFolder + std::string(Title) + "\\" + run.uninstallProduct : InstallLogFolder(run);
  UseFolders(run, folder, run.uninstall ? "Uninstall " : "");
  if (MadeFolder(run, folder)) {
    run.log.LogFilename(folder + "\\" + Title + (run.uninstall ? " Uninstall.html" : ".html"));
    MakeRoomForLog(run);
  } else {
    UseFolders(run, run.programFolder, run.uninstall ? "Uninstall " : "");
  }
  run.log.ReleaseEntries();
}
