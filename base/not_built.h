// For procedures that this version declares and calls, but does not carry out yet.
#pragma once

#include <string>

#include "base/run.h"

/// Says in one line of the log that the procedure did nothing.
inline void LogNothingDone(Run& run, const std::string& procedure, const std::string& what) {
  run.log.Log(procedure, 0, what + ": not carried out by this version, nothing was done.", false, EntryType::Warning);
}
