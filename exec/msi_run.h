// Installing Windows Installer packages, one at a time on the whole machine.
#pragma once

#include <cstdint>
#include <string>

#include "base/component.h"
#include "base/run.h"
#include "exec/msi_queries.h"

namespace assistant {

/// What is to be done about a package, given what is installed.
struct PackagePlan {
  enum class Step {
    Run,           ///< msiexec installs it, or repairs it
    ReplaceOlder,  ///< the same, after the older version has been removed
    Skip,          ///< the same or a newer version is there
  };
  Step step = Step::Run;
  std::string command;           ///< msiexec with its arguments
  std::string installedVersion;  ///< the version that is there; "" for none
};

/// Decides about the component's package and tells the decision. `arguments` is what follows msiexec's action switch:
/// the package path and its options.
PackagePlan PlanPackage(clsAppLog& log, const Component& component, const InstalledProducts& installed,
                        const std::string& arguments);

/// Runs the plan's command and returns msiexec's exit code. A failure is told by "Process Return" and "Message" of the
/// component's record, a restart that the package asks for by the run value "Reboot" = "immediate".
std::int32_t ExecuteMSI(const Services& services, const Component& component, const PackagePlan& plan,
                        const std::string& workingFolder);

/// Waits without limit until no other msiexec is busy; false when a person confirmed the end of the run meanwhile.
/// Looks once a minute; after "NumberOfLoops" minutes (5 when the product does not say) an interactive run tells the
/// user.
bool OneMSIExec(const Run& run);

/// True when at most one msiexec.exe runs (the installer service itself goes by that name). False also when the process
/// list cannot be had; the log says why.
bool CheckProcesses(const Services& services);

}  // namespace assistant
