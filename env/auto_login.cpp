#include "env/auto_login.h"

#include "base/procedure.h"
#include "base/registry.h"

namespace assistant {
namespace {

/// Both operations go by this name: logs have always shown the switching off under the name of the switching on.
constexpr const char* BothOperations = "EnableAutoLogin";

constexpr const char* Winlogon = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
constexpr const char* NetworkLogon = "Network\\Logon";

constexpr std::uint32_t Windows95Family = 1;
constexpr std::uint32_t NTFamily = 2;

struct LogonValue {
  const char* name;
  std::string text;
};

std::uint32_t PlatformIdentifier(const Procedure& here, platform::Machine& machine) {
  platform::SystemVersion version;
  const bool known = machine.systemVersion(version) == platform::Status::Ok;
  if (!known || (version.platformId != Windows95Family && version.platformId != NTFamily)) throw here.failure(6096);
  return version.platformId;
}

void Write(const Services& services, const Procedure& here, const char* key, const LogonValue& value) {
  modRegistry::WriteOrRaise(services, here, key, value.name, {value.text});
}

}  // namespace

bool EnableAutoLogin(const Services& services, const LogonAccount& account) {
  const Procedure here(services.log, BothOperations);
  return here.guard([&] {
    if (PlatformIdentifier(here, services.machine.machine()) == Windows95Family) {
      Write(services, here, NetworkLogon, {"Default Password", account.password});
      return true;
    }
    const LogonValue values[] = {
        {"AutoAdminLogon", "1"},
        {"DefaultUserName", account.user},
        {"DefaultPassword", account.password},
        {"DefaultDomainName", account.domain},
        {"AltDefaultUserName", account.user},
        {"AltDefaultPassword", account.password},
        {"AltDefaultDomainName", account.domain},
    };
    for (const LogonValue& value : values) Write(services, here, Winlogon, value);
    return true;
  });
}

bool DisableAutoLogin(const Services& services) {
  const Procedure here(services.log, BothOperations);
  return here.guard([&] {
    if (PlatformIdentifier(here, services.machine.machine()) == Windows95Family) {
      Write(services, here, NetworkLogon, {"Default Password", ""});
      return true;
    }
    Write(services, here, Winlogon, {"AutoAdminLogon", "0"});
    // The domains stay as they are.
    for (const char* name : {"DefaultUserName", "DefaultPassword", "AltDefaultUserName", "AltDefaultPassword"}) {
      if (modRegistry::RegKeyExists(services.machine.registry(), Winlogon, name)) {
        Write(services, here, Winlogon, {name, ""});
      }
    }
    return true;
  });
}

}  // namespace assistant
