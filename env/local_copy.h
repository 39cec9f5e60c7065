// The copy of the program that stays on the machine, and its removal.
#pragma once

#include <string>

#include "base/identity.h"
#include "base/procedure.h"
#include "base/services.h"
#include "platform/clock.h"

namespace assistant {

/// Its folder, below the program files.
std::string LocalFolder(platform::Machine& machine);
/// Its file, under the name of the running program.
std::string LocalProgram(platform::Machine& machine, const ProgramFile& program);

/// True when a product other than `except` needs the copy for its uninstall: its record says that it can be
/// uninstalled, or its entry in the system's list of programs starts the copy.
bool IsLocalCopyNeeded(platform::RegistryReader& registry, const std::string& localProgram,
                       const std::string& except = "");

/// Creates the folder for the procedure that needs it, `here`. Raises an error when its drive is missing.
void CreateLocalFolder(const Services& services, const Procedure& here);
/// Copies the running program there; a copy that runs itself is left alone. The new copy is written beside the old one
/// and takes its place when it is whole. Raises the system's number.
void CopyProgramToLocalFolder(const Services& services, const ProgramFile& program);

/// Asks the system's scheduler to delete a program's file in a moment: it cannot delete itself while it runs. `here` is
/// the procedure that ends the run.
void ScheduleRemoval(const Services& services, const Procedure& here, const std::string& file);

/// The scheduler's command line for a deletion two minutes after `now`: "AT hh:mm " and a command of the system's
/// shell.
std::string RemovalCommand(const platform::LocalTime& now, const std::string& systemRoot, const std::string& file);

}  // namespace assistant
