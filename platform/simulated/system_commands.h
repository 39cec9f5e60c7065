// Programs that come with the system and need no declaration: net, AT, reg, and the commands of cmd /c.
#pragma once

#include <string>

#include "platform/simulated/files.h"
#include "platform/simulated/machine.h"
#include "platform/simulated/outcome.h"
#include "platform/simulated/registry.h"

namespace simulated {

struct SystemCommand {
  bool known = false;    ///< false: this is none of them, or none that is understood
  bool missing = false;  ///< it is one of them, and the system has no such program
  Outcome outcome = {};
};

/// What such programs look at and change.
struct CommandSurroundings {
  Machine& machine;
  Files& files;
  Registry& registry;
};

/// What a command line of the system does. `program` is its first argument. Known are `net` (a share or a name is
/// accepted, a connection is not: no server answers), `AT`, `cmd /c` with del, rd, copy and echo into a file, `reg add`
/// and `reg delete`; AT and cmd on the NT family, reg from Windows XP on.
SystemCommand KnownCommand(const std::string& commandLine, const std::string& program,
                           const CommandSurroundings& around);

/// True for a command line of those, and of msiexec: whoever declares a machine need not tell what it does.
bool NeedsNoDeclaration(const std::string& commandLine);

}  // namespace simulated
