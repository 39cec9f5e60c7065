// The copy of the program that stays on the machine.
#pragma once

#include <string>

#include "base/run.h"

/// Its folder, below the program files.
std::string LocalFolder(Run& run);
/// Its file, under the name of the running program.
std::string LocalProgram(Run& run);

/// True when a recorded product other than `except` is registered for an uninstall, for which it needs the copy.
bool IsLocalCopyNeeded(Run& run, const std::string& except = "");

/// Creates the folder. Raises an error when its drive is missing.
void CreateLocalFolder(Run& run);
/// Copies the running program there; a copy that runs itself is left alone. Raises the system's number.
void CopyProgramToLocalFolder(Run& run);
