// Installing Windows Installer packages, one at a time on the whole machine.
#pragma once

#include <cstdint>
#include <string>

#include "base/run.h"

/// What was done with a package.
struct PackageRun {
  bool alreadyInstalled = false;  ///< the same or a newer version is there, nothing was run
  std::string command;
  std::int32_t exitCode = -1;
};

namespace modQXInstallationMain {

/// Installs (or, with `repair`, repairs) the current component's package through msiexec. `arguments` is what follows
/// the action switch: the package path and its options. Does nothing when the same or a newer version is installed; an
/// older one is uninstalled first. Always returns true: a failure is told by "Process Return" and "Message" of the
/// component's record, a restart that the package asks for by the run value "Reboot" = "immediate". `told` gets what
/// was done.
bool ExecuteMSI(Run& run, const std::string& arguments, bool repair, const std::string& workingFolder,
                PackageRun& told);

}  // namespace modQXInstallationMain

/// Returns true as soon as no other msiexec is busy, and only then. Looks once a minute; after "NumberOfLoops" minutes
/// (5 when the product does not say) an interactive run tells the user.
bool OneMSIExec(Run& run);

/// True when at most one msiexec.exe runs (the installer service itself goes by that name). False also when the process
/// list cannot be had; the log says why.
bool CheckProcesses(Run& run);
