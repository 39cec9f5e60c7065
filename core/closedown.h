// The single way out of a run.
#pragma once

#include "base/run.h"

/// Ends the run, however it went: removes the drive mapping, resets the run's registry values, switches automatic logon
/// off, arranges the removal of a local program copy, closes and archives the log, restarts the machine when a closing
/// restart is due, and ends the program (throws ProgramEnd with the process's exit code). A step that fails does not
/// keep the later ones from running.
[[noreturn]] void Closedown(Run& run);
