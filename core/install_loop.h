// Installing the components of a disc one after another.
#pragma once

#include "base/run.h"

namespace assistant {

/// How far an install has come, over all its discs and restarts.
struct InstallProgress {
  /// The first component done tells the position that was reached before the restart.
  bool positionIsBeforeRestart = false;
  bool restartIsDeferred = false;  ///< a component asked for a restart behind the last one
};

enum class LoopEnd {
  NoneLeft,  ///< every component of this disc has been worked on
  CutShort,  ///< a failure ended the loop; it is recorded
};

/// Installs the components whose sequence numbers lie above "LastSequence", in their order, and records each as it is
/// done. A component may ask for a restart, and a person for the end (RunStops). At the end of the product's last disc
/// the product is registered and a deferred restart carried out.
LoopEnd StartInstall(Run& run, InstallProgress& progress);

}  // namespace assistant
