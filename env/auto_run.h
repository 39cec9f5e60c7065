// The script in the user's Startup folder that starts the program again at the next logon.
#pragma once

#include <string>

#include "base/services.h"

namespace assistant::modAutoRun {

/// Full path of the script.
std::string AutoRunScript(platform::Machine& machine);

/// Writes the script that starts the program in this folder again, with these arguments, when the current user logs on.
/// The Startup folder itself is not made. False after a failure, which is logged, and shown except on a silent run.
bool CreateAutoRun(const Services& services, const std::string& programFolder, const std::string& arguments);

/// Deletes the script. False after a failure, a missing script included, which is logged, and shown except on a silent
/// run.
bool DestroyAutoRun(const Services& services);

/// Deletes a script that was left behind; none is no failure.
void ForgetAutoRun(const Services& services);

}  // namespace assistant::modAutoRun
