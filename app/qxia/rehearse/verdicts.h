// How each component of a product fared in a rehearsal, told from its record, its turn in the log and what happened.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/qxia/rehearse/component_record.h"
#include "app/qxia/rehearse/rows.h"
#include "app/qxia/result.h"

namespace qxia {

/// What the outcomes are told from.
struct Evidence {
  bool uninstall = false;
  std::vector<ComponentRecord> components;  ///< in their order
  std::vector<std::string> reasons;         ///< why the product failed
  Turns turns;
  std::vector<std::string> effects;
  std::string system;                       ///< "windows xp"
  std::map<std::string, std::string> site;  ///< the values of the installation's key
};

std::vector<ComponentResult> JudgeComponents(const Evidence& evidence);

}  // namespace qxia
