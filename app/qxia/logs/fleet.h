// What became of many machines: a folder with one sub-folder per machine, in each what was collected from it.
#pragma once

#include <string>
#include <vector>

#include "app/qxia/logs/log_file.h"
#include "app/qxia/logs/reader.h"

namespace qxia::logs {

inline constexpr const char* Unreadable = "unreadable";

/// The newest run of one product on one machine; of a machine that sent nothing readable, an empty one.
struct FleetRun {
  std::string machine;
  std::string file;     ///< the log or record that told of it
  std::string outcome;  ///< "succeeded", "failed", "waiting", "broken off" or "unreadable"
  LoggedRun run;
};

/// The same failure on one or more machines.
struct FleetFailure {
  std::string product;
  std::string component;  ///< "" for what made the run itself fail
  std::string reason;
  std::string newest;                 ///< time of the newest run with it
  std::vector<std::string> machines;  ///< newest first
  PackageLog packageLog;              ///< of the newest one that has a line
};

struct Fleet {
  std::vector<FleetRun> runs;           ///< by machine and product
  std::vector<FleetFailure> failures;   ///< newest first
  std::vector<Problem> problems;        ///< what could not be read, or not whole
  std::vector<std::string> passedOver;  ///< pages that are no logs of the program
  std::size_t machines = 0;
};

/// Reads every *.html and *.reg below the machines' folders. Links are not followed. Raises std::runtime_error when
/// the folder itself cannot be read.
Fleet ReadFleet(const std::string& folder);

/// The outcomes of machines in the order in which they are shown.
inline constexpr const char* MachineOutcomes[] = {"succeeded", "failed", "waiting", "broken off", Unreadable};

/// "Office Suite 2.1.0", with ", uninstall" behind it for a removal; "no product known" where none is.
std::string ProductOf(const FleetRun& run);

}  // namespace qxia::logs
