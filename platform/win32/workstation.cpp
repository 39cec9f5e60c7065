#include "platform/win32/workstation.h"

#include "platform/win32/clock.h"
#include "platform/win32/dialogs.h"
#include "platform/win32/event_log.h"
#include "platform/win32/files.h"
#include "platform/win32/machine.h"
#include "platform/win32/main_window.h"
#include "platform/win32/other_windows.h"
#include "platform/win32/power.h"
#include "platform/win32/processes.h"
#include "platform/win32/registry.h"
#include "platform/win32/windows_installer.h"

namespace win32 {

struct Workstation::Parts {
  explicit Parts(HINSTANCE instance)
      : diskWindow(instance),
        mainWindow(instance, diskWindow),
        dialogs(instance, mainWindow, diskWindow),
        otherWindows(mainWindow) {}

  RegistryAdapter registry;
  ProcessesAdapter processes;
  WindowsInstallerAdapter installer;
  FilesAdapter files;
  MachineAdapter machine;
  ClockAdapter clock;
  DiskWindow diskWindow;
  MainWindowAdapter mainWindow;
  DialogsAdapter dialogs;
  OtherWindowsAdapter otherWindows;
  EventLogAdapter eventLog;
  PowerAdapter power;
};

Workstation::Workstation(void* instance)
    : parts_(std::make_unique<Parts>(instance != nullptr ? static_cast<HINSTANCE>(instance)
                                                         : GetModuleHandleA(nullptr))) {}
Workstation::~Workstation() = default;

platform::Registry& Workstation::registry() {
  return parts_->registry;
}
platform::Processes& Workstation::processes() {
  return parts_->processes;
}
platform::WindowsInstaller& Workstation::installer() {
  return parts_->installer;
}
platform::Files& Workstation::files() {
  return parts_->files;
}
platform::Machine& Workstation::machine() {
  return parts_->machine;
}
platform::Clock& Workstation::clock() {
  return parts_->clock;
}
platform::MainWindow& Workstation::mainWindow() {
  return parts_->mainWindow;
}
platform::Dialogs& Workstation::dialogs() {
  return parts_->dialogs;
}
platform::OtherWindows& Workstation::otherWindows() {
  return parts_->otherWindows;
}
platform::EventLog& Workstation::eventLog() {
  return parts_->eventLog;
}
platform::Power& Workstation::power() {
  return parts_->power;
}

}  // namespace win32
