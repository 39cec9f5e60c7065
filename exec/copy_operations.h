// Components that are delivered by copying their folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/run.h"

/// The folders that a component is copied to. `appendPath`: they are roots below which the component's own "Path"
/// follows.
struct CopyTargets {
  std::vector<std::string> folders;
  bool appendPath = true;

  /// The first folder; "" when there is none.
  std::string first() const { return folders.empty() ? std::string() : folders.front(); }
};

/// Name of the n-th target's key or value, and the key below a component's that holds the values.
std::string NumberedTarget(int number);
std::string CopyTargetListKey(const std::string& componentKey);

/// Reads the numbered keys "CopyOpTarget1", "CopyOpTarget2", ... of a component ini's section up to the first empty
/// one. True when there is at least one.
bool ReadIniCopyOps(Run& run, std::vector<std::string>& targets, const std::string& section,
                    const std::string& iniFile);

/// The targets that a component's record holds: its list, or else its single "CopyOpTarget".
void ReadRegCopyOps(Run& run, CopyTargets& targets, const std::string& componentKey);

/// Carries out the current component's copy operation. 0: go on with the component, whose file to run is `installPath`
/// (changed when it is to run from the copy); positive: nothing more is to be done for it (1 the same or a newer
/// package is installed, 2 a newer version stands beside the target, 3 copied); -1: the copy failed, which is recorded.
std::int16_t StartCopyOp(Run& run, std::string& installPath, CopyTargets& targets);

/// The last character of the current component's "CopyOp", which alone counts; 0 when it has no copy operation.
char CopyCode(Run& run);

/// Fills in the product's own folder for such copies ("CopyOpRoot", "CopyOpHold") when there is no first target.
void UseDefaultTarget(Run& run, CopyTargets& targets, const char* productValue);

/// The folder that a target means for this component.
std::string CopyDestination(Run& run, const std::string& target, bool appendPath);
