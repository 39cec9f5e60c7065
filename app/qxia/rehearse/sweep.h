// The same rehearsal again and again, each time with the power cut, or one operation failing, at another point.
#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "app/qxia/rehearse/settings.h"

namespace qxia {

enum class Fault { PowerCut, Failure };

struct SweepPoint {
  int number = 0;         ///< among all operations of the rehearsal that change something, from 1
  std::string operation;  ///< "files.write C:\..."
  std::string left;       ///< what was otherwise than without the fault
};

struct SweepResult {
  int points = 0;
  std::vector<SweepPoint> failed;  ///< that did not recover
};

/// A rehearsal whose operations are known, to be repeated with faults.
class Sweep {
 public:
  /// Rehearses once without any fault. Raises UsageError when that run does not end by itself.
  Sweep(const RehearsalSettings& settings, std::string machineFile, std::string folder);

  /// What changes something, in order: the operation and its target.
  const std::vector<std::string>& operations() const { return operations_; }
  /// "each" or a number.
  std::vector<int> pointsToCut(const std::string& asked) const;
  /// "each", the name of an operation, or one with ":N" behind it.
  std::vector<int> pointsToFail(const std::string& asked) const;
  SweepResult run(Fault fault, const std::vector<int>& points, const std::function<void(int)>& progress) const;

 private:
  struct End;

  End play(Fault fault, int point) const;

  const RehearsalSettings& settings_;
  std::string machineFile_;
  std::string folder_;
  std::vector<std::string> operations_;
  std::vector<std::string> uncut_;  ///< the end without a fault, as lines
};

/// The names of operations with how often each came.
std::string ListOperations(const std::vector<std::string>& operations);

nlohmann::json ToJson(const SweepResult& result);

}  // namespace qxia
