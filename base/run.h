// The one run: what all procedures of a run share. Made by the entry point, passed by reference, never copied.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "base/app_log.h"
#include "base/file_system.h"
#include "base/identity.h"
#include "base/main_window.h"
#include "platform/platform.h"

/// One row of the drive table.
struct DriveRow {
  char letter;
  double freeBytes;
};

/// One network share that the product needs.
struct Share {
  std::string name;
  std::string folder;
  std::string machineTypes;  ///< query for the machines that need it; "" for all
};

/// One product that Windows Installer has on this machine.
struct InstalledProduct {
  std::string code;  ///< "{...}", 38 characters
  std::string name;
  std::string version;
};

/// One row of the sequence table.
struct SequenceRow {
  std::string component;
  double number;
};

/// The component in work, as its record tells it.
struct CurrentComponent {
  std::string name;
  std::string key;  ///< registry path of its record
  std::string productCode;
  std::string productVersion;
  std::string install;  ///< the file to run
  std::string path;     ///< its folder, in full
  double sequenceNumber = 0;
  std::string displayName;  ///< the package's product name; the component's name where the package has none
};

/// Folders of the run's log.
struct LogFolders {
  std::string msiLogs;
  std::string archive;
};

struct Run {
  explicit Run(platform::Platform& platform);
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  platform::Platform& machine;
  std::string programFolder;  ///< without trailing backslash
  std::string programName;    ///< file name without ".exe"

  clsFso fso;
  frmMain window;
  clsAppLog log;
  LogFolders logFolders;

  // What the command line says
  std::string commandLine;  ///< the argument text, without the program's own path
  bool silent = false;
  bool verbose = false;
  bool uninstall = false;
  bool uninstallProductFound = false;
  std::string uninstallProduct;
  std::string appIniPath;
  std::string productIniPath;

  // What is installed
  std::string productName;
  std::string productDisplayName;
  std::string packageRoot;
  std::string numberOfLoops;
  std::string endMessage;
  std::vector<std::string> actions;         ///< components named by the product ini, in its order
  std::vector<std::string> forceUninstall;  ///< entries of the forced-uninstall list
  std::vector<std::string> forceDelete;     ///< paths of the forced-delete list
  std::vector<Share> shares;
  CurrentComponent component;
  std::vector<SequenceRow> sequence;

  // What this machine is
  std::string operatingSystem;
  std::string serverType;
  std::vector<DriveRow> driveTable;
  std::vector<InstalledProduct> installedProducts;

  // Where the run stands
  bool rebooted = false;
  bool resumePending = false;
  bool initialised = false;
  bool busy = false;  ///< initialisation is at work
  bool installSuccess = true;
  bool localInstance = false;  ///< this is the local copy of a multi-disk install
  bool aborted = false;        ///< a failed component ended the loop
  bool cancelled = false;      ///< a person ended the run
  bool logonDeclined = false;  ///< a person cancelled the password window
  bool deferredReboot = false;
  bool failed = false;          ///< the product result as this run set it
  std::string failureReasons;   ///< one a line
  std::string mappedDrive;      ///< drive mapped for this run, with its colon
  std::string programToRemove;  ///< local program copy that no product needs any more
  std::string nextVolumeName;   ///< disc that the run goes on with; "" when this is the last
  bool furtherDisc = false;     ///< the disc in work is not the one that the run began with
  char discDrive = 0;           ///< drive of a further disc; 0 while none was changed
  int lastIniError = 0;         ///< number of the last failure of GetIniString

  std::map<int, std::string> captions;
};
