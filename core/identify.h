// Which product a run is for, and what is left of an earlier install of it.
#pragma once

#include "base/procedure.h"
#include "base/run.h"

namespace assistant {

/// For a run that installs: finds the application ini, takes the product's name from it where that is not known yet,
/// sets up the log and maps the product's drive. A resumed run shows its window or tray icon before. From a disc of a
/// product on several ones a local copy is started in place of this program, which stops the run (RunStops). Raises an
/// error for a product that cannot be identified. `here` is the procedure that starts the run.
void IdentifyProduct(Run& run, const Procedure& here);

/// From a disc of a product on several ones, as these ini files say, starts the local copy in place of this program and
/// stops the run (RunStops), so that the drive is free.
void LeaveDiscIfNeeded(const Run& run, const Procedure& here, const IniPaths& inis);

/// Wipes the record of an earlier install of the product, but for what outlives it.
void WipeProductRecord(const Run& run, const Procedure& here);

}  // namespace assistant
