// Removing one component.
#pragma once

#include <string>

#include "base/component.h"
#include "base/procedure.h"
#include "base/run.h"

namespace assistant {

/// What became of a component that was to be removed.
enum class RemovalEnd {
  Failed,  ///< its removal failed, or left it in place (6092); first, since an error handler gives it
  Removed,
  KeptForOthers,  ///< another product uses it
  NotInstalled,   ///< the package is not on this machine
  NoCommand,      ///< nothing says how to remove it (6094)
};

/// Whether a component that another product uses is removed all the same.
enum class OtherUsers { Count, DoNotCount };

/// What "Uninstalled" of a component's record says when an uninstall left the component to other products.
inline constexpr const char* LeftToOthers = "Kept";

/// Number of recorded products that hold a component of exactly that name (letter case counts), the current one
/// included. One whose uninstall has removed the component, or left it to others, does not count. `component` is the
/// one in work, for the log.
int UserCount(const Services& services, const Component& component, const std::string& name);

/// True, with a warning in the log, when another product uses the component.
bool IsKeptForOthers(const Services& services, const Procedure& here, const Component& component,
                     const std::string& name, OtherUsers otherUsers = OtherUsers::Count);

/// Removes the component under this name: a package through msiexec, anything else by its recorded command. Its
/// failures are logged.
RemovalEnd ExecuteUninstall(const Run& run, const Component& component, const std::string& name,
                            OtherUsers otherUsers = OtherUsers::Count);

}  // namespace assistant
