// Judging a component after it ran.
#pragma once

#include "base/component.h"
#include "base/run.h"
#include "exec/file_kinds.h"

namespace assistant {

enum class Verdict {
  Failed,
  Passed,
  Aborted,  ///< the component ends the whole run; the product's "AbortOnFail" is set
};

/// Judges the component that has just run, from the verdict that it left in its record ("Pass", "Fail", "Abort") or,
/// for a package, from the list of installed products. Writes one log entry.
Verdict CheckSuccess(const Run& run, const Component& component, const FileKind& kind);

}  // namespace assistant
