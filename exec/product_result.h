// The result of the whole product.
#pragma once

#include <string>

#include "base/procedure.h"
#include "base/run.h"

namespace assistant {

/// Records the outcome of the product run in the run and under the product's key: "Succeeded" as a number (-1 or 0),
/// and for a failure one more line of "Abort Reason". A success empties the reasons.
void SetProductResult(Run& run, bool succeeded, const std::string& reason);

struct ProductResult {
  bool succeeded = false;
  std::string reasons;  ///< one a line; "" after a success
};

/// A success only where the record says so, which the product's own programs may have changed, and nothing in this run
/// recorded a failure.
ProductResult GetProductResult(const Run& run);

/// Raises an error where a record of this run could not be written: it cannot begin. `here` is the procedure that
/// begins.
void RequireRecords(const Run& run, const Procedure& here);

}  // namespace assistant
