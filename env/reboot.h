// Restarting the machine so that the run goes on by itself at the next logon.
#pragma once

#include <string>

#include "base/run.h"

/// Restarts the machine by force and ends the program (throws ProgramEnd). `final` is the closing restart of a run,
/// which records nothing; any other records the product and "Rebooted" for the run to resume. Failures of the restart
/// itself are not looked at: the next start finds the run as it is.
[[noreturn]] void Reboot(Run& run, bool final, int exitCode = 0);

/// Enables the shutdown privilege of this process. Failures pass silently: the restart is tried anyway.
void AdjustToken(Run& run);

namespace modAutoRun {

/// Writes the script that starts the program again, with these arguments, when the current user logs on. The Startup
/// folder itself is not made. False after a failure, which is logged and shown unless `silent`.
bool CreateAutoRun(Run& run, const std::string& arguments, bool silent);

/// Deletes the script. False after a failure, a missing script included, which is logged and shown unless `silent`.
bool DestroyAutoRun(Run& run, bool silent);

/// Full path of the script.
std::string AutoRunScript(Run& run);

}  // namespace modAutoRun

/// Deletes a script that was left behind; none is no failure.
void ForgetAutoRun(Run& run);

/// True for the run value "Reboot" that asks for one restart at the very end of the run.
bool IsCommit(const std::string& rebootRequest);

/// Writes the script for this run's own arguments and restarts; the run goes on after the logon.
[[noreturn]] void RestartAndResume(Run& run);
