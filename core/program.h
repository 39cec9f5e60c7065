// The program as its entry points see it.
#pragma once

#include "platform/platform.h"

namespace assistant {

/// Runs the program on this machine from start to end, the window's event loop included, and returns the exit code of
/// the process (core/exit_codes.h).
int RunProgram(platform::Platform& machine);

}  // namespace assistant
