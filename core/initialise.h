// Preparing a run before the user's Continue: ini files, package root, records, configuration.
#pragma once

#include "base/run.h"

/// Prepares an install or uninstall run and sets run.initialised. Every failure is told in the log and, on an
/// interactive run, in the window: where an ini file is missing the window stays until the user presses its button, and
/// a silent run ends; refused runs end through closedown (both throw ProgramEnd).
void Initialise(Run& run);

/// The same for the disc that was put in after the first one: its components are recorded behind those of the discs
/// before it. Pre-install actions and the password belong to the first disc, and nobody is asked to continue. False
/// when the disc could not be prepared.
bool InitialiseNextDisc(Run& run);

/// Checks and records the configuration; where that fails the run ends through closedown (throws ProgramEnd).
void CheckConfiguration(Run& run);

/// Records the paths of both ini files, from which /isr and /iar take them.
void RememberIniPaths(Run& run);
