#include "base/log_setup.h"

#include <string>

#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"

namespace assistant {
namespace {

constexpr const char* DefaultLogFolder = "c:\\program files\\Tarvel\\Installation\\";

LogFolders FoldersBeside(const std::string& folder, const std::string& prefix) {
  return {folder + "\\" + prefix + "MSI Log Files", folder + "\\" + prefix + "QXIA Archive Logs"};
}

/// A failure is told with what happens in its place, and what to do.
bool MadeFolder(const Services& services, const Procedure& here, const LogPlace& place) {
  try {
    services.fso.createFolder(place.folder);
    return true;
  } catch (const Error& failure) {
    here.warn("The log folder " + place.folder + " could not be made (" + failure.text() + "); this log is kept at " +
              services.log.defaultLogFilename() + " instead. " + place.remedy);
    return false;
  }
}

/// A log that could not be archived is gone on with.
void MakeRoomForLog(const Services& services, const Procedure& here, const LogFolders& folders) {
  clsAppLog& log = services.log;
  if (!services.fso.fileExists(log.logFilename()) || !log.archiveLogFile(folders.archive)) return;
  here.guard([&] { services.fso.deleteFileForced(log.logFilename()); });
}

}  // namespace

LogPlace UninstallLogPlace(const std::string& product) {
  const std::string folder = DefaultLogFolder + std::string(Title) + "\\" + product;
  return {folder, folder + "\\" + Title + " Uninstall.html", "Uninstall ",
          "Make it a folder that this user may write to."};
}

LogPlace InstallLogPlace(const modINI::IniFile& applicationIni, const std::string& product) {
  const std::string given = Unquoted(Trim(modINI::GetIniString(applicationIni, "Product", "LogFilePath", "")));
  const std::string folder = Joined(given.empty() ? DefaultLogFolder : given, Title) + "\\" + product;
  return {folder, folder + "\\" + Title + ".html", "",
          "Give section [Product] of " + applicationIni.path +
              " a LogFilePath (and a Name) of which that folder can be made."};
}

LogFolders SetUpLog(const Services& services, const ProgramFile& program, const LogPlace& place, LogStart start) {
  const Procedure here(services.log, "SetUpLog");
  LogFolders folders = FoldersBeside(place.folder, place.prefix);
  if (MadeFolder(services, here, place)) {
    services.log.logFilename(place.file);
    if (start == LogStart::Fresh) MakeRoomForLog(services, here, folders);
  } else {
    folders = FoldersBeside(program.folder, place.prefix);
  }
  services.log.releaseEntries();
  return folders;
}

}  // namespace assistant
