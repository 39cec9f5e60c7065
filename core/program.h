// The program as its entry points see it.
#pragma once

#include "platform/platform.h"

namespace assistant {

/// Runs the program on this machine from start to end, the window's event loop included, and returns the exit code of
/// the process: 0 the product run succeeded, 1 it failed, 2 a person cancelled or declined, 3 another copy is running.
int RunProgram(platform::Platform& machine);

}  // namespace assistant
