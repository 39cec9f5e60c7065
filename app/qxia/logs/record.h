// The product's record, as a .reg file that somebody exported from the machine.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/qxia/logs/reader.h"

namespace qxia::logs {

struct RecordedComponent {
  std::string name;
  int sequence = 0;
  std::string install;
  std::string processReturn;
  std::string message;
};

struct RecordedProduct {
  std::string name;
  std::string version;
  std::optional<bool> succeeded;  ///< nothing where the record does not say
  std::vector<std::string> reasons;
  bool isPending = false;  ///< the run goes on behind a restart
  std::vector<RecordedComponent> components;
};

/// The products that a .reg text tells of, REGEDIT4 or version 5. Of other keys nothing is taken.
/// Raises std::runtime_error for what is no .reg text.
std::vector<RecordedProduct> ReadRecords(const std::string& path);

/// What a record knows better than the rows of the run that left it: the product's reasons, and what failed components
/// said themselves. A record of another product or version changes nothing.
void TakeOver(const RecordedProduct& record, LoggedRun& run);

/// A run as far as the record alone tells of it.
LoggedRun RunOf(const RecordedProduct& record);

}  // namespace qxia::logs
