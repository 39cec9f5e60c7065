// Removing the local copy of the program, which cannot delete itself while it runs.
#pragma once

#include <string>

#include "base/run.h"
#include "platform/clock.h"

/// Asks the system's scheduler to delete a program's file in a moment.
void ScheduleRemoval(Run& run, const std::string& file);

/// The scheduler's command line for a deletion two minutes after `now`: "AT hh:mm " and a command of the system's
/// shell.
std::string RemovalCommand(const platform::LocalTime& now, const std::string& systemRoot, const std::string& file);
