// Components that are delivered by copying their folder.
#pragma once

#include <string>

#include "base/component.h"
#include "base/run.h"
#include "exec/copy_targets.h"
#include "exec/msi_queries.h"

namespace assistant {

/// What is to be copied, decided before anything is.
struct CopyPlan {
  enum class Step {
    Nothing,           ///< the component runs from where it is
    AlreadyInstalled,  ///< the same or a newer package is installed
    NewerOnServer,     ///< a newer version stands beside the target
    Deliver,           ///< the copy is the installation
    CopyAndRun,        ///< the component's file runs from the copy
  };
  Step step = Step::Nothing;
  CopyTargets targets;
};

/// `recorded` are the targets that the component's record holds.
CopyPlan PlanCopy(const Run& run, const Component& component, const InstalledProducts& installed,
                  const CopyTargets& recorded);

/// What a copy operation came to.
struct CopyEnd {
  enum class Is {
    GoOn,  ///< the component's file is to be run
    Done,  ///< nothing more is to be done for the component
    Failed,
  };
  Is is = Is::GoOn;
  std::string file;    ///< to run
  std::string reason;  ///< of the failure, where it is one of the product's own
};

/// Plans and carries out the component's copy operation. `file` is the one to run, unless it is to run from the copy.
CopyEnd StartCopyOp(const Run& run, const Component& component, const InstalledProducts& installed,
                    const std::string& file);

}  // namespace assistant
