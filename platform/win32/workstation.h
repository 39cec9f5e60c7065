// The real machine: this computer, through the system's own calls.
#pragma once

#include <memory>

#include "platform/platform.h"

namespace win32 {

class Workstation : public platform::Platform {
 public:
  /// `instance` is the program's module as its entry point got it; null stands for the running program.
  explicit Workstation(void* instance = nullptr);
  ~Workstation() override;

  platform::Registry& registry() override;
  platform::Processes& processes() override;
  platform::WindowsInstaller& installer() override;
  platform::Files& files() override;
  platform::Machine& machine() override;
  platform::Clock& clock() override;
  platform::MainWindow& mainWindow() override;
  platform::Dialogs& dialogs() override;
  platform::OtherWindows& otherWindows() override;
  platform::EventLog& eventLog() override;
  platform::Power& power() override;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace win32
