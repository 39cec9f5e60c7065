// The one boundary: everything the program needs from a machine. Above it nobody knows which machine it is.
#pragma once

#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/event_log.h"
#include "platform/files.h"
#include "platform/machine.h"
#include "platform/main_window.h"
#include "platform/other_windows.h"
#include "platform/power.h"
#include "platform/processes.h"
#include "platform/registry.h"
#include "platform/windows_installer.h"

namespace platform {

class Platform {
 public:
  virtual ~Platform() = default;

  virtual Registry& registry() = 0;
  virtual Processes& processes() = 0;
  virtual WindowsInstaller& installer() = 0;
  virtual Files& files() = 0;
  virtual Machine& machine() = 0;
  virtual Clock& clock() = 0;
  virtual MainWindow& mainWindow() = 0;
  virtual Dialogs& dialogs() = 0;
  virtual OtherWindows& otherWindows() = 0;
  virtual EventLog& eventLog() = 0;
  virtual Power& power() = 0;
};

}  // namespace platform
