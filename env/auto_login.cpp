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

/// Empties what is there. A password that stays behind is worse than any other value, so that each is tried.
bool Empty(const Services& services, const Procedure& here, const char* key, const char* name) {
  return here.guard([&] {
    if (modRegistry::RegKeyExists(services.machine.registry(), key, name)) Write(services, here, key, {name, ""});
    return true;
  });
}

bool SwitchOff(const Services& services, const Procedure& here) {
  if (PlatformIdentifier(here, services.machine.machine()) == Windows95Family) {
    Write(services, here, NetworkLogon, {"Default Password", ""});
    return true;
  }
  bool done = modRegistry::WriteOrTell(services, here, Winlogon, "AutoAdminLogon", {"0"});
  // The domains stay as they are.
  for (const char* name : {"DefaultUserName", "DefaultPassword", "AltDefaultUserName", "AltDefaultPassword"}) {
    if (!Empty(services, here, Winlogon, name)) done = false;
  }
  return done;
}

}  // namespace

bool EnableAutoLogin(const Services& services, const ProductRecord& record, const LogonAccount& account) {
  const Procedure here(services.log, BothOperations);
  return here.guard([&] {
    const bool is95 = PlatformIdentifier(here, services.machine.machine()) == Windows95Family;
    record.writeOrRaise(here, Value::LogonSwitchedOnBy, record.product());
    if (is95) {
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

bool IsAutoLoginOurs(const ProductRecord& record) {
  return record.has(Value::LogonSwitchedOnBy);
}

bool DisableAutoLogin(const Services& services, const ProductRecord& record) {
  const Procedure here(services.log, BothOperations);
  return here.guard([&] {
    if (!SwitchOff(services, here)) return false;
    record.remove(Value::LogonSwitchedOnBy);
    return true;
  });
}

}  // namespace assistant
