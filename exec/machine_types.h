// The part that this computer plays among a site's servers, and the queries that ask for it.
#pragma once

#include <string>
#include <vector>

#include "base/component.h"
#include "base/run.h"

namespace assistant {

/// True when the query ("all machines", "1st machine", a comma-separated list of types, ...) accepts this machine's
/// type. The type is read once: from "Server Type" under the installation key, or else from the product ini's [Product]
/// "ServerType". An unknown type is accepted by every query.
bool IsValidMachine(const Run& run, const std::string& query);

/// True for a query that every machine accepts.
bool AcceptsEveryMachine(const std::string& query);
/// The types that a query accepts, in lower case: those of a named query, or else the elements of a list as they stand.
std::vector<std::string> AcceptedTypes(const std::string& query);
/// The types that the named queries speak of.
std::vector<std::string> KnownMachineTypes();

/// IsValidMachine of the component's "MachineType"; one that is not given accepts any machine.
bool CheckMachineType(const Run& run, const Component& component);

}  // namespace assistant
