#include "env/drive_mapping.h"

#include <string>

#include "base/error_handler.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/text.h"
#include "exec/process.h"

namespace {

constexpr const char* Source = "MapDriveIfRequired";
constexpr const char* Section = "Connection";

std::string Setting(Run& run, const char* key, const char* defaultText) {
  return modINI::GetIniString(run, Section, key, defaultText, Unquoted(run.productIniPath), true);
}

bool IsDrive(const std::string& drive) {
  return drive.size() == 2 && IsFullPath(drive) && drive[1] == ':';
}

/// The drive asked for, as a letter and a colon; "" with a warning when it cannot be mapped.
std::string DriveToMap(Run& run, const std::string& value) {
  const std::string drive = value.size() < 2 ? value + ":" : value.substr(0, 2);
  if (!IsDrive(drive)) {
    run.log.Log(Source, 0, "Invalid drive letter specification for mapping drive " + value, false, EntryType::Warning);
    return std::string();
  }
  if (run.fso.DriveExists(drive.front())) {
    run.log.Log(Source, 0, "Drive " + drive + " already exists - cannot connect network drive", false,
                EntryType::Warning);
    return std::string();
  }
  return drive;
}

void MapDrive(Run& run, const std::string& drive) {
  const std::string address = Setting(run, "IP", "");
  const std::string domain = Setting(run, "DomainName", "");
  if (Split(address, '.').size() != 4 || domain.empty()) {
    run.log.Log(Source, 0, "Unable to read all required settings for mapping drive " + drive, false,
                EntryType::Warning);
    return;
  }
  const std::string user = Setting(run, "Username", "Administrator");
  const std::string password = Setting(run, "Password", "");
  const std::string share = "\\\\" + address + "\\packages";
  // No blank stands before "to".
  run.log.Log(Source, 0, "Mapping drive " + drive + "to " + share);
  const std::string command = "net use " + drive + " " + share + " /user:" + domain + "\\" + user + " " +
                              (password.empty() ? "\"\"" : password) + " /persistent:no";
  if (GoShell(run, command, "", 30000, platform::ShowWindow::Hidden) != 0)
    throw Error(GeneralError, "Drive mapping shell failed", Source);
  run.log.Log(Source, 0, "Drive mapped successfully");
  run.mappedDrive = drive;
}

}  // namespace

void MapDriveIfRequired(Run& run) {
  Guarded(run, Source, [&] {
    if (run.productIniPath.empty() || !run.mappedDrive.empty()) return;
    const std::string value = Setting(run, "BuildServerDriveMapping", "");
    if (value.empty()) return;
    const std::string drive = DriveToMap(run, value);
    if (!drive.empty()) MapDrive(run, drive);
  });
}
