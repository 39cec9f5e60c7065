// The operating system's automatic logon, which brings the machine back to where the run goes on after a restart.
#pragma once

#include <string>

#include "base/run.h"

/// Switches automatic logon on (NT family) or sets the default password (Windows 95 family). True when every value was
/// written. Whatever was set before is overwritten. Failures (6087, 6096) are logged; the password never is.
bool EnableAutoLogin(Run& run, const std::string& password, const std::string& userName, const std::string& domain);

/// Switches it off again and empties the account's values that are there, but the domains.
bool DisableAutoLogin(Run& run);
