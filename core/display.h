// What a run shows of itself: its window, or on a silent run its icon in the notification area.
#pragma once

#include "base/run.h"

/// Shows the window with its captions and its welcome, or adds the tray icon.
void ShowRun(Run& run);

/// Tells that the run's work begins and disables the buttons for it.
void ShowWork(Run& run);

/// Works for the person at the window until the run ends (throws ProgramEnd).
[[noreturn]] void ServeWindow(Run& run);
