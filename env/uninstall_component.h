// Removing one component.
#pragma once

#include <cstdint>
#include <string>

#include "base/run.h"

/// What became of a component that was to be removed.
enum class RemovalEnd {
  Removed,
  KeptForOthers,  ///< another product uses it
  NotInstalled,   ///< the package is not on this machine
  NoCommand,      ///< nothing says how to remove it (6094)
  Failed,         ///< its removal failed, or left it in place (6092)
};

/// Number of recorded products that hold a component of exactly that name (letter case counts), the current one
/// included.
std::int32_t UserCount(Run& run, const std::string& component);

/// True, with a warning in the log, when another product uses the component and nothing forces its removal.
bool IsKeptForOthers(Run& run, const std::string& component, bool force);

/// The command line that msiexec removes a package with: silently and with restarts suppressed. `logOption` stands
/// directly behind the product code.
std::string PackageRemovalCommand(const std::string& productCode, const std::string& logOption);

namespace modQXInstallationMain {

/// Removes the current component under this name: a package through msiexec, anything else by its recorded command. Its
/// failures are logged.
RemovalEnd ExecuteUninstall(Run& run, const std::string& component, bool isMsi, bool force);

}  // namespace modQXInstallationMain
