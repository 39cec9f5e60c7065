// The condition that held a component back, with what the machine has in its place.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/qxia/rehearse/rows.h"

namespace qxia {

/// From the component's turn in the log. `site` are the values of the installation's key in the registry.
std::string WhyHeldBack(const std::vector<LogRow>& turn, const std::string& system,
                        const std::map<std::string, std::string>& site);

}  // namespace qxia
