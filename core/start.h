// The program's start and the decision what kind of run this is.
#pragma once

#include <string>

#include "base/run.h"

namespace assistant {

/// Prepares the run: refuses a second copy, reads the command line, sets up log and display, and by the kind of run
/// initialises or restores it. Afterwards its work can be done. Whatever keeps it from that stops the run (RunStops).
void Main(Run& run);

/// Stops the program (RunStops) when another copy of it runs, and brings that one to the front. A local instance of a
/// multi-disk install may run beside the copy that started it.
void PreventDuplicate(const Run& run);

/// The class name of a window, by which another copy's window is found.
std::string WindowClass(platform::OtherWindows& windows, platform::WindowHandle window);

}  // namespace assistant
