// The operating system's automatic logon, which brings the machine back to where the run goes on after a restart.
#pragma once

#include <string>

#include "base/services.h"

namespace assistant {

/// Whom the system is to log on.
struct LogonAccount {
  std::string password;
  std::string user;
  std::string domain;
};

/// Switches automatic logon on (NT family) or sets the default password (Windows 95 family). True when every value was
/// written. Whatever was set before is overwritten. Failures (6087, 6096) are logged; the password never is.
bool EnableAutoLogin(const Services& services, const LogonAccount& account);

/// Switches it off again and empties the account's values that are there, but the domains.
bool DisableAutoLogin(const Services& services);

}  // namespace assistant
