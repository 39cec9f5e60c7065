// One component's way through the install loop.
#pragma once

#include "base/component.h"
#include "base/procedure.h"
#include "base/run.h"
#include "exec/msi_queries.h"

namespace assistant {

/// What became of a component.
enum class ComponentEnd {
  Done,      ///< installed, or nothing to install
  HeldBack,  ///< its conditions do not hold
  Failed,    ///< the failure is recorded; the run goes on
  Aborted,   ///< the failure is recorded; the run ends here
};

/// Checks, prepares, runs and judges the component for the loop, which is `here`. `installed` is what Windows Installer
/// had before it.
ComponentEnd InstallComponent(Run& run, const Procedure& here, const Component& component,
                              const InstalledProducts& installed);

}  // namespace assistant
