// Copying a component's folder.
#pragma once

#include <string>

#include "base/component.h"
#include "base/services.h"
#include "exec/copy_targets.h"

namespace assistant {

/// What copying came to. A failure is logged and shown already, on silent runs too; its reason is the product's.
struct Copied {
  bool fine = true;
  std::string reason;
};

/// Copies the component's folder to every target. A destination bears a mark from before its first file until after its
/// last, so that a copy that was cut off never passes for a finished one.
Copied DoCopyOp(const Services& services, const Component& component, const CopyTargets& targets);

}  // namespace assistant
