// One component's way through the install loop.
#pragma once

#include "base/run.h"

/// What became of a component.
enum class ComponentEnd {
  Done,      ///< installed, or nothing to install
  HeldBack,  ///< its conditions do not hold
  Failed,    ///< the failure is recorded; the run goes on
  Aborted,   ///< the failure is recorded; the run ends here
};

/// Checks, prepares, runs and judges the current component.
ComponentEnd InstallComponent(Run& run);
