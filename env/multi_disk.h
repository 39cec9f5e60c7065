// Products that span several discs.
#pragma once

#include <string>

#include "base/run.h"

namespace modCDFunctions {

/// When the program was started from a disc of a product with more discs: starts a local copy of it in its place and
/// ends (throws ProgramEnd). Otherwise returns.
void isMultiCD(Run& run);

/// The disc that the product's record names as the next one; "" when this is the last.
std::string RecordedNextVolume(Run& run);

/// Asks for the disc that the run goes on with and waits until it is there.
void PromptForDisk(Run& run);

}  // namespace modCDFunctions
