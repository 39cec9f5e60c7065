// Where a run's log, its Windows Installer logs and its archived logs lie.
#pragma once

#include "base/run.h"

/// Decides on the log folders of this run, makes them, archives the log that an earlier run left (a resumed run goes on
/// in it) and releases the entries held so far into the run's own log. Never raises: when the folder cannot be made, a
/// warning says so and the log goes to the default place.
///
/// Install runs read [Product] "LogFilePath" of the application ini; uninstall runs use the product named on the
/// command line and a fixed place.
void SetUpLog(Run& run);
