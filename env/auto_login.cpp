#include "env/auto_login.h"

#include <vector>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/registry.h"

namespace {

constexpr const char* Winlogon = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
constexpr const char* NetworkLogon = "Network\\Logon";

/// Both operations go by this name in the log.
constexpr const char* Source = "EnableAutoLogin";

constexpr std::uint32_t Windows95Family = 1;
constexpr std::uint32_t NTFamily = 2;

struct LogonValue {
  const char* name;
  std::string text;
};

std::uint32_t PlatformIdentifier(Run& run) {
  platform::SystemVersion version;
  const bool known = run.machine.machine().systemVersion(version) == platform::Status::Ok;
  if (!known || (version.platformId != Windows95Family && version.platformId != NTFamily)) {
    throw modErrorBase::MakeError(6096, {}, Source);
  }
  return version.platformId;
}

void Write(Run& run, const char* key, const LogonValue& value) {
  modRegistry::WriteOrRaise(run, key, value.name, value.text, Source);
}

}  // namespace

bool EnableAutoLogin(Run& run, const std::string& password, const std::string& userName, const std::string& domain) {
  return Guarded(run, Source, [&] {
    if (PlatformIdentifier(run) == Windows95Family) {
      Write(run, NetworkLogon, {"Default Password", password});
      return true;
    }
    const LogonValue values[] = {
        {"AutoAdminLogon", "1"},          {"DefaultUserName", userName},    {"DefaultPassword", password},
        {"DefaultDomainName", domain},    {"AltDefaultUserName", userName}, {"AltDefaultPassword", password},
        {"AltDefaultDomainName", domain},
    };
    for (const LogonValue& value : values) Write(run, Winlogon, value);
    return true;
  });
}

bool DisableAutoLogin(Run& run) {
  return Guarded(run, Source, [&] {
    if (PlatformIdentifier(run) == Windows95Family) {
      Write(run, NetworkLogon, {"Default Password", ""});
      return true;
    }
    Write(run, Winlogon, {"AutoAdminLogon", "0"});
    // The domains stay as they are.
    for (const char* name : {"DefaultUserName", "DefaultPassword", "AltDefaultUserName", "AltDefaultPassword"}) {
      if (modRegistry::RegKeyExists(run, Winlogon, name)) Write(run, Winlogon, {name, ""});
    }
    return true;
  });
}
