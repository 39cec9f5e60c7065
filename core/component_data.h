// What a component's ini file and package say, before any of it is recorded.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/component.h"
#include "base/run.h"

namespace assistant {

/// A component as it is read, with what is recorded in the keys below its own.
struct ComponentData {
  Component component;
  std::string olderConditions;                                  ///< the older notation, whole
  std::vector<std::pair<std::string, std::string>> conditions;  ///< name and data of each
  std::vector<std::string> copyTargets;
};

/// Reads all of it. `entry` is the path of the component ini as the product ini names it, `here` the procedure that
/// records it. Raises 6081 when there is no such ini, and an error that names the key for what cannot be recorded.
ComponentData ReadComponent(const Run& run, const Procedure& here, const std::string& component,
                            const std::string& entry);

}  // namespace assistant
