// How a run comes to its end on the screen.
#pragma once

#include "base/run.h"

/// Ends the run: removes the tray icon of a silent run and calls Closedown (throws ProgramEnd).
[[noreturn]] void EndInstall(Run& run);

/// A run that goes no further: a silent one ends at once (throws ProgramEnd); an interactive one keeps its window,
/// whose one button ends it.
void LeaveOrEnd(Run& run);

/// Tells an interactive run's result in the window: the end message, or what failed and why.
void ShowResult(Run& run);

/// True when the window's Continue button means that the user has read the result.
bool ShowsResult(Run& run);
