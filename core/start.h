// The program's start and the decision what kind of run this is.
#pragma once

#include "base/run.h"

/// Starts the run: refuses a second copy, reads the command line, prepares log and display and hands over to
/// initialisation and, on silent runs, to the install loop. Returns when an interactive run waits for the user; every
/// other run ends in here (throws ProgramEnd).
void Main(Run& run);

/// Ends the program (throws ProgramEnd) when another copy of it runs, and brings that one to the front. A local
/// instance of a multi-disk install may run beside the copy that started it.
void PreventDuplicate(Run& run);

/// The class name of a window.
std::string WindowClass(Run& run, platform::WindowHandle window);
