// The program's switches. Each is looked for anywhere in the argument text, as plain text.
#pragma once

#include <string>

#include "base/run.h"

namespace assistant {

/// The argument text: the command line without the program's own path (quoted or not) and without the blank behind it.
std::string ArgumentText(const std::string& commandLine, const std::string& programPath);

/// True for /? and /help, in any case, as arguments of their own.
bool AsksForHelp(const std::string& argumentText);

/// Reads the switches into the run's options: /s silent, /v verbose, /x uninstall of the product that follows, /is= and
/// /ia= the ini paths, /isr and /iar the remembered ones. An uninstall sets up its log and asks for confirmation, on
/// silent runs too, which /yes answers; refused, or without a product name, it stops the run (RunStops).
void GetCommandLine(Run& run, const std::string& commandLine);

/// What stands behind a switch (found without regard to letter case), up to the character before the next "/".
std::string ParseCommand(const std::string& commandLine, const std::string& name);

/// The product named behind "/x", up to the next "/", without the blanks around it; "" when there is none.
std::string GetUninstallProduct(const std::string& commandLine);

}  // namespace assistant
