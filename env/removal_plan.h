// How one component is to be removed, decided before anything is done to it.
#pragma once

#include <string>

#include "base/component.h"
#include "base/services.h"

namespace assistant {

struct RemovalPlan {
  enum class Step {
    NotInstalled,        ///< the package is not on this machine, or the installation ended before the component
    RunMsiexec,          ///< the command removes the package
    NoCommand,           ///< nothing says how to remove the component
    ProgramIsMissing,    ///< the command names a program that is not there
    WentWithItsRemoval,  ///< that program is gone with what it removed, by a removal that was cut off behind it
    RunProgram,          ///< the command removes the component
  };
  Step step;
  std::string command;
};

/// Data of the value "Uninstalled" while a removal command runs.
inline constexpr const char* RemovalBegun = "Begun";

/// The command line that msiexec removes a package with: silently and with restarts suppressed. `logOption` stands
/// directly behind the product code.
std::string PackageRemovalCommand(const std::string& productCode, const std::string& logOption);

/// A package goes through msiexec. The command logs to `logFile`; to none where that is empty.
RemovalPlan PlanPackageRemoval(const Component& component, bool isInstalled, const std::string& logFile);

/// Anything else goes by its recorded command, or by its entry in the system's list of programs. Looks for the program
/// that the command names.
RemovalPlan PlanProgramRemoval(const Services& services, const Component& component);

/// True when nothing recorded names a program: no product code, and no command line or only switches. Then the
/// component's entry in the system's list of programs has the command, where there is one.
bool IsRemovedByListEntry(const Component& component);
/// The key of that entry, which bears the component's name.
std::string ListEntryOf(const Component& component);

/// The program or script that a removal command begins with, and its arguments: the command without a script's host.
std::string WithoutHost(const std::string& command);

}  // namespace assistant
