// The matrix that every report of several runs shows.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/rehearse/run.h"

namespace qxia {

/// One component on every system.
struct ComponentRow {
  std::string name;
  std::vector<const ComponentResult*> cells;  ///< null where a system has no record of it

  const ComponentResult* first() const {
    for (const ComponentResult* cell : cells)
      if (cell != nullptr) return cell;
    return nullptr;
  }
};

/// In the order of the sequence.
std::vector<ComponentRow> ComponentRows(const std::vector<RehearsedRun>& runs);

}  // namespace qxia
