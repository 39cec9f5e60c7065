// Judging a component after it ran, and the result of the whole product.
#pragma once

#include <string>

#include "base/run.h"

namespace modQXInstallationMain {

/// Judges the component that has just run, from the verdict that it left in its record ("Pass", "Fail", "Abort") or,
/// for a package (`installType` "msi"), from the list of installed products. Writes run.installSuccess and one log
/// entry. An abort returns true; the caller learns of it from run.installSuccess and the product's "AbortOnFail".
bool CheckSuccess(Run& run, const std::string& installType);

}  // namespace modQXInstallationMain

/// Records the outcome of the product run in the run and under the product's key: "Succeeded" as a number (-1 or 0),
/// and for a failure one more line of "Abort Reason". A success empties the reasons.
void SetProductResult(Run& run, bool succeeded, const std::string& reason);

/// True unless the product is marked as failed; then `reason` gets its reasons, one a line.
bool GetProductResult(Run& run, std::string& reason);
