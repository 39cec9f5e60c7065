#include "base/log_setup.h"

#include <optional>
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

/// A folder that the ini file names without its drive lies beside the ini file.
std::string FullLogRoot(const modINI::IniFile& applicationIni, const std::string& given) {
  if (IsFullPath(given) && !StartsAtDriveFolder(given)) return given;
  return applicationIni.files.fullPath(IsFullPath(given) ? given
                                                         : Normalised(Joined(FolderPart(applicationIni.path), given)));
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

/// The failure's text; nothing when the folder is there. A link that somebody put there is no place for a log.
std::optional<std::string> WhyNoFolder(const Services& services, const std::string& folder) {
  try {
    services.fso.createFolder(folder);
  } catch (const Error& failure) {
    return failure.text();
  }
  platform::Attributes attributes;
  services.machine.files().attributes(folder, attributes);
  return attributes.link ? std::optional(folder + " is a link to another folder") : std::nullopt;
}

}  // namespace

LogPlace UninstallLogPlace(const std::string& product) {
  const std::string folder = DefaultLogFolder + std::string(Title) + "\\" + product;
  return {folder, folder + "\\" + Title + " Uninstall.html", "Uninstall ",
          "Make it a folder that this user may write to."};
}

LogPlace InstallLogPlace(const modINI::IniFile& applicationIni, const std::string& product) {
  const std::string given = Unquoted(Trim(modINI::GetIniString(applicationIni, "Product", "LogFilePath", "")));
  const std::string root = given.empty() ? DefaultLogFolder : FullLogRoot(applicationIni, given);
  const std::string folder = Joined(root, Title) + "\\" + product;
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

void MakeMsiLogFolder(const Services& services, const Procedure& here, LogFolders& folders) {
  const auto failure = WhyNoFolder(services, folders.msiLogs);
  if (!failure) return;
  const std::string inTemp =
      Joined(services.machine.machine().windowsFolder(), "Temp\\" + LastElement(folders.msiLogs));
  const bool usable = !WhyNoFolder(services, inTemp);
  here.warn("The folder " + folders.msiLogs + " for Windows Installer's logs could not be made (" + *failure + "); " +
            (usable ? "they are kept in " + inTemp + " instead." : "none are kept.") +
            " Give section [Product] of the application ini a LogFilePath below which folders can be made.");
  folders.msiLogs = usable ? inTemp : "";
}

}  // namespace assistant
