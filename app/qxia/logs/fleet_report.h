// The forms in which `qxia fleet` tells.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "app/qxia/logs/fleet.h"

namespace qxia::logs {

/// Runs of one product with one outcome.
struct FleetLine {
  std::string product;
  std::string outcome;
  std::vector<std::string> machines;
};
std::vector<FleetLine> LinesOf(const Fleet& fleet);

std::string FleetText(const Fleet& fleet);
/// One line per machine and product. A text that a spreadsheet would take for a formula gets an apostrophe in front.
std::string FleetCsv(const Fleet& fleet);
std::string FleetJson(const Fleet& fleet);
/// One page: shares, failures, and every machine with filters.
std::string FleetPage(const Fleet& fleet);

}  // namespace qxia::logs
