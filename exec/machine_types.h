// The part that this computer plays among a site's servers, and the queries that ask for it.
#pragma once

#include <string>

#include "base/run.h"

namespace modMain {

/// True when the query ("all machines", "1st machine", a comma-separated list of types, ...) accepts this machine's
/// type. The type is read once: from "Server Type" under the installation key, or else from the product ini's [Product]
/// "ServerType". An unknown type is accepted by every query.
bool IsValidMachine(Run& run, const std::string& query);

/// IsValidMachine of the current component's "MachineType"; one that is not given accepts any machine.
bool CheckMachineType(Run& run);

}  // namespace modMain
