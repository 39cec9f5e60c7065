// What came of a rehearsed run, as text.
#pragma once

#include "platform/simulated/workstation.h"

/// Prints what happened in order; the entries of the log file itself are left out.
void PrintEffects(const simulated::Workstation& workstation);
/// Prints every product's record and its components with their verdicts.
void PrintProducts(const simulated::Workstation& workstation);
/// Prints what ran undeclared and what was declared in vain.
void PrintLooseEnds(const simulated::Workstation& workstation);
