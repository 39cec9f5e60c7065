#include "platform/win32/workstation.h"

#include "platform/win32/clock.h"
#include "platform/win32/event_log.h"
#include "platform/win32/files.h"
#include "platform/win32/machine.h"
#include "platform/win32/power.h"
#include "platform/win32/processes.h"
#include "platform/win32/registry.h"
#include "platform/win32/screen.h"
#include "platform/win32/windows_installer.h"

namespace win32 {

struct Workstation::Parts {
  explicit Parts(HINSTANCE instance) : screen(instance) {}

  Registry registry;
  Processes processes;
  WindowsInstaller installer;
  Files files;
  Machine machine;
  Clock clock;
  Screen screen;
  EventLog eventLog;
  Power power;
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
platform::Screen& Workstation::screen() {
  return parts_->screen;
}
platform::EventLog& Workstation::eventLog() {
  return parts_->eventLog;
}
platform::Power& Workstation::power() {
  return parts_->power;
}

}  // namespace win32
