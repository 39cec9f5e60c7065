// Where a run's log, its Windows Installer logs and its archived logs lie.
#pragma once

#include <string>

#include "base/identity.h"
#include "base/ini.h"
#include "base/procedure.h"
#include "base/services.h"

namespace assistant {

/// Folders beside a run's log.
struct LogFolders {
  std::string msiLogs;  ///< "" where none can be made: msiexec writes no log then
  std::string archive;
};

/// Where a run's log belongs and what its parts are called.
struct LogPlace {
  std::string folder;
  std::string file;
  std::string prefix;  ///< of the folders beside the log
  std::string remedy;  ///< what to do when the folder cannot be made
};

/// The place that [Product] "LogFilePath" of the application ini gives the product's log.
LogPlace InstallLogPlace(const modINI::IniFile& applicationIni, const std::string& product);
/// The fixed place of an uninstall's log.
LogPlace UninstallLogPlace(const std::string& product);

/// Whether a run begins its log, or goes on in the one that it finds.
enum class LogStart { Fresh, Continued };

/// Makes the folder, archives the log that an earlier run left and releases the entries held so far into the run's own
/// log. Never raises: when the folder cannot be made, a warning says so and the log stays in the default place.
LogFolders SetUpLog(const Services& services, const ProgramFile& program, const LogPlace& place, LogStart start);

/// Makes the folder of Windows Installer's logs, or else one below the Windows folder's Temp, or leaves none, which is
/// told by a warning. Never raises.
void MakeMsiLogFolder(const Services& services, const Procedure& here, LogFolders& folders);

}  // namespace assistant
