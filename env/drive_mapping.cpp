#include "env/drive_mapping.h"

#include "base/paths.h"
#include "base/text.h"
#include "exec/process.h"

namespace assistant {
namespace {

constexpr const char* Section = "Connection";

std::string Setting(const modINI::IniFile& ini, const char* key, const char* defaultText) {
  return modINI::GetIniString({ini.files, ini.log, Unquoted(ini.path)}, Section, key, defaultText);
}

bool IsDrive(const std::string& drive) {
  return drive.size() == 2 && IsFullPath(drive) && drive[1] == ':';
}

/// The drive asked for, as a letter and a colon; "" with a warning when it cannot be mapped.
std::string DriveToMap(clsFso& fso, const Procedure& here, const std::string& value) {
  const std::string drive = value.size() < 2 ? value + ":" : value.substr(0, 2);
  if (!IsDrive(drive)) {
    here.warn("Invalid drive letter specification for mapping drive " + value);
    return std::string();
  }
  if (fso.driveExists(drive.front())) {
    here.warn("Drive " + drive + " already exists - cannot connect network drive");
    return std::string();
  }
  return drive;
}

/// Whose share is mapped, and as whom.
struct Connection {
  std::string address;
  std::string domain;
  std::string user;
  std::string password;

  bool isComplete() const { return Split(address, '.').size() == 4 && !domain.empty(); }
  std::string share() const { return "\\\\" + address + "\\packages"; }
};

Connection ReadConnection(const modINI::IniFile& ini) {
  return {.address = Setting(ini, "IP", ""),
          .domain = Setting(ini, "DomainName", ""),
          .user = Setting(ini, "Username", "Administrator"),
          .password = Setting(ini, "Password", "")};
}

std::string MappingCommand(const std::string& drive, const Connection& connection, const std::string& password) {
  return "net use " + drive + " " + connection.share() + " /user:" + connection.domain + "\\" + connection.user + " " +
         password + " /persistent:no";
}

/// The mapping of the drive, its password hidden from the log.
SystemCommand Mapping(const std::string& drive, const Connection& connection) {
  const std::string& password = connection.password;
  return {MappingCommand(drive, connection, password.empty() ? "\"\"" : password),
          MappingCommand(drive, connection, password.empty() ? "\"\"" : "*****"), NetSeconds};
}

/// True when it is mapped, whether or not the command has come to its end. Raises an error when the system refuses.
bool MapDrive(const Services& services, const Procedure& here, const std::string& drive, const Connection& connection) {
  if (!connection.isComplete()) {
    here.warn("Unable to read all required settings for mapping drive " + drive);
    return false;
  }
  // No blank stands before "to".
  here.action("Mapping drive " + drive + "to " + connection.share());
  const auto code = RunSystemCommand(services, Mapping(drive, connection));
  if (!code) return services.fso.driveExists(drive.front());
  if (*code != 0) throw here.failure("Drive mapping shell failed");
  here.action("Drive mapped successfully");
  return true;
}

}  // namespace

std::string MapDriveIfRequired(const Services& services, const modINI::IniFile& productIni) {
  const Procedure here(services.log, "MapDriveIfRequired");
  return here.guard([&] {
    if (productIni.path.empty()) return std::string();
    const std::string value = Setting(productIni, "BuildServerDriveMapping", "");
    if (value.empty()) return std::string();
    const std::string drive = DriveToMap(services.fso, here, value);
    if (drive.empty()) return std::string();
    return MapDrive(services, here, drive, ReadConnection(productIni)) ? drive : std::string();
  });
}

void RemoveDriveMapping(const Services& services, const Procedure& here, const std::string& drive) {
  if (drive.empty()) return;
  const std::string removing = "Removing drive mapping for " + drive;
  here.action(removing);
  const std::string command = "net use " + drive + " /d";
  if (RunSystemCommand(services, {command, command, NetSeconds}) == 0) {
    here.action("Drive mapping successfully removed");
  } else {
    here.warnNumbered(removing + " failed - needs manual remove", Shown::UnlessSilent);
  }
}

}  // namespace assistant
