// The order of the components.
#pragma once

#include <string>
#include <vector>

#include "base/component.h"
#include "base/run.h"

namespace assistant {

/// One row of the sequence table.
struct SequenceRow {
  std::string component;
  double number;
};
using Sequence = std::vector<SequenceRow>;

/// The components that the product's record holds (those with a sequence number).
std::vector<std::string> RecordedComponents(const Run& run);
/// The highest of their sequence numbers; 0 without any.
double HighestSequenceNumber(const Run& run);

/// One row per component, by ascending sequence number.
Sequence GetSequence(const Run& run, const std::vector<std::string>& components);

struct NextInstall {
  enum class Is { Unknown, Found, None };
  Is is = Is::Unknown;
  Component component;
};

/// The first component with a sequence number above this one. Unknown after a failure, which is logged.
NextInstall GetNextInstall(const Run& run, const Sequence& sequence, double lastSequence);

/// A component of the product in work, as its record tells it.
Component SelectComponent(const Run& run, const std::string& component);

}  // namespace assistant
