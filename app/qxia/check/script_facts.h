// What a script or program of the media would do, as far as its bytes tell.
#pragma once

#include <string>

#include "app/qxia/check/media_model.h"

namespace qxia::check {

struct ScriptFacts {
  std::string question;         ///< the statement that waits for a person; "" without one
  bool asksForRestart = false;  ///< it writes the value "Reboot"
  std::string madeBy;           ///< the tool that an installer was made by; "" where none is recognised
  std::string silentSwitches;   ///< that tool's silent switches, as a person reads them
  bool isSilent = false;        ///< one of them is in the arguments
};

/// Looks into a program, script or batch file that is on the media.
ScriptFacts LookInto(const Found& found, const std::string& name, const std::string& arguments);

}  // namespace qxia::check
