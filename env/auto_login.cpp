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

constexpr const char* SwitchedOn = "AutoAdminLogon";
constexpr const char* DefaultPassword95 = "Default Password";

enum class AtSwitchingOff { Emptied, Stays };

struct AccountValue {
  const char* name;
  std::string LogonAccount::*text;
  AtSwitchingOff atSwitchingOff;
};

constexpr AccountValue AccountValues[] = {
    {"DefaultUserName", &LogonAccount::user, AtSwitchingOff::Emptied},
    {"DefaultPassword", &LogonAccount::password, AtSwitchingOff::Emptied},
    {"DefaultDomainName", &LogonAccount::domain, AtSwitchingOff::Stays},
    {"AltDefaultUserName", &LogonAccount::user, AtSwitchingOff::Emptied},
    {"AltDefaultPassword", &LogonAccount::password, AtSwitchingOff::Emptied},
    {"AltDefaultDomainName", &LogonAccount::domain, AtSwitchingOff::Stays},
};

std::uint32_t PlatformIdentifier(const Procedure& here, platform::Machine& machine) {
  platform::SystemVersion version;
  const bool known = machine.systemVersion(version) == platform::Status::Ok;
  if (!known || (version.platformId != Windows95Family && version.platformId != NTFamily)) throw here.failure(6096);
  return version.platformId;
}

void Write(const Services& services, const Procedure& here, const char* key, const char* name,
           const std::string& text) {
  modRegistry::WriteOrRaise(services, here, key, name, {text});
}

/// Empties what is there. A password that stays behind is worse than any other value, so that each is tried.
bool Empty(const Services& services, const Procedure& here, const char* key, const char* name) {
  return here.guard([&] {
    if (modRegistry::RegKeyExists(services.machine.registry(), key, name)) Write(services, here, key, name, "");
    return true;
  });
}

bool SwitchOff(const Services& services, const Procedure& here) {
  if (PlatformIdentifier(here, services.machine.machine()) == Windows95Family) {
    Write(services, here, NetworkLogon, DefaultPassword95, "");
    return true;
  }
  bool done = modRegistry::WriteOrTell(services, here, Winlogon, SwitchedOn, {"0"});
  for (const AccountValue& value : AccountValues) {
    if (value.atSwitchingOff == AtSwitchingOff::Emptied && !Empty(services, here, Winlogon, value.name)) done = false;
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
      Write(services, here, NetworkLogon, DefaultPassword95, account.password);
      return true;
    }
    Write(services, here, Winlogon, SwitchedOn, "1");
    for (const AccountValue& value : AccountValues) {
      Write(services, here, Winlogon, value.name, account.*value.text);
    }
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
