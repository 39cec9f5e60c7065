// Preparing a run before the user's Continue: ini files, package root, records, configuration.
#pragma once

#include "base/procedure.h"
#include "base/run.h"

namespace assistant {

/// Prepares an install from its first disc, or an uninstall. Every failure is told in the log and stops the run
/// (RunStops).
void Initialise(Run& run);

/// Prepares the disc that was put in after the first one: its components are recorded behind those of the discs before
/// it. Pre-install actions and the password belong to the first disc, and nobody is asked to continue.
void InitialiseNextDisc(Run& run);

/// Finds the product ini, remembers the paths of both ini files, from which /isr and /iar take them, and maps the
/// product's drive. Without a product ini the run stops (RunStops), which `here` tells.
void RequireProductIni(Run& run, const Procedure& here);

/// Checks and records the configuration; where that fails the run stops (RunStops).
void CheckConfiguration(Run& run);

}  // namespace assistant
