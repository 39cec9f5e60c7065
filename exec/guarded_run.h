// The error handler of the procedures that make up a run.
#pragma once

#include <exception>
#include <string>
#include <utility>

#include "base/error_handler.h"
#include "exec/outcome.h"

/// Runs the body of a procedure without which the run has not succeeded: a failure is logged under `source` and also
/// marks the product as failed. True when the body came to its end.
template <class Body>
bool GuardedRun(Run& run, const std::string& source, Body&& body) {
  try {
    std::forward<Body>(body)();
    return true;
  } catch (const std::exception& failure) {
    LogFailure(run, source, failure);
    SetProductResult(run, false, failure.what());
    return false;
  }
}
