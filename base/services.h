// What procedures work with.
#pragma once

#include "base/app_log.h"
#include "base/file_system.h"
#include "base/main_window.h"
#include "base/refusals.h"
#include "platform/platform.h"

namespace assistant {

/// Handles to what a run owns: the machine, the file-system helper, the window, the log and what was
/// refused. Who is handed these can do
/// work and tell of it, and knows nothing of the run.
struct Services {
  platform::Platform& machine;
  clsFso& fso;
  frmMain& window;
  clsAppLog& log;
  Refusals& refusals;
};

}  // namespace assistant
