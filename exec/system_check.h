// The operating system of this computer, and the keywords that ask for it.
#pragma once

#include <string>

#include "base/run.h"

namespace assistant {

/// The operating system's name, asked for once.
const std::string& SystemName(const Run& run);

/// True when the keyword ("win2k") selects this machine's operating system.
bool IsValidOS(const Run& run, const std::string& keyword);

}  // namespace assistant
