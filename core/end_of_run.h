// How a run comes to its end on the screen.
#pragma once

#include "base/run.h"

/// Ends the run: removes the tray icon of a silent run and calls Closedown (throws ProgramEnd).
[[noreturn]] void EndInstall(Run& run);

/// A run that goes no further: a silent one ends at once (throws ProgramEnd); an interactive one keeps its window,
/// whose Continue button, by now with another caption, ends it. About shows the log from here on.
void LeaveOrEnd(Run& run);

/// Ends the run because a person asked for it, which is a failure of the product (throws ProgramEnd).
[[noreturn]] void EndAtRequest(Run& run);

/// The same for an uninstall that has not begun: the product stays installed, and its record does not change.
[[noreturn]] void EndUntouched(Run& run);

/// The same, when the window was closed while work ran and that is confirmed; to be called between two components.
void EndIfWanted(Run& run);

/// Tells an interactive run's result in the window: the end message, or what failed and why.
void ShowResult(Run& run);

/// True when the window's Continue button means that the user has read the result.
bool ShowsResult(Run& run);
