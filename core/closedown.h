// What is left behind at the end of every run.
#pragma once

#include "base/run.h"

namespace assistant {

/// What the driver does once a run has closed down.
struct Closing {
  int exitCode;  ///< of the process
  bool restart;  ///< a closing restart is due
};

/// What the process tells its caller of the run.
int ExitCodeOf(const Run& run);

/// Closes the run down, however it went: removes the drive mapping, resets the run's registry values, switches
/// automatic logon off, arranges the removal of a local program copy, closes and archives the log. A step that fails
/// does not keep the later ones from running.
Closing Closedown(const Run& run);

}  // namespace assistant
