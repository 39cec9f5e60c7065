// Copying a component's folder.
#pragma once

#include <string>

#include "base/run.h"

struct CopyTargets;

/// Copies the current component's folder to every target. False after a failure, which is logged, shown (on silent runs
/// too) and recorded for the product. A destination bears a mark from before its first file until after its last, so
/// that a copy that was cut off never passes for a finished one.
bool DoCopyOp(Run& run, const CopyTargets& targets);

/// Deletes a copy. Until the folder is gone it bears the same mark.
void DeleteCopy(Run& run, const std::string& folder);

/// True when a copy into that folder was begun and not finished.
bool HoldsUnfinishedCopy(Run& run, const std::string& folder);
