// The script in the user's Startup folder that starts the program again at the next logon.
#pragma once

#include <string>

#include "base/services.h"

namespace assistant::modAutoRun {

/// Writes the script that starts the program in this folder again, with these arguments, when the current user logs on:
/// into the Startup folder below the user's profile, or, where that is not there, into the one that the system names.
/// The Startup folder itself is not made. False after a failure, which is logged, and shown except on a silent run.
bool CreateAutoRun(const Services& services, const std::string& programFolder, const std::string& arguments);

/// Deletes the script wherever it is. False after a failure, a missing script included, which is logged, and shown
/// except on a silent run.
bool DestroyAutoRun(const Services& services);

/// Deletes a script that was left behind; none is no failure. False after a failure, which is told the same way.
bool ForgetAutoRun(const Services& services);

}  // namespace assistant::modAutoRun
