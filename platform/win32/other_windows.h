// The top-level windows of this machine.
#pragma once

#include "platform/other_windows.h"
#include "platform/win32/main_window.h"

namespace win32 {

class OtherWindowsAdapter final : public platform::OtherWindows {
 public:
  explicit OtherWindowsAdapter(MainWindowAdapter& mainWindow) : mainWindow_(mainWindow) {}

  std::string className(platform::WindowHandle window) override;
  std::string caption(platform::WindowHandle window) override;
  void setCaption(platform::WindowHandle window, const std::string& words) override;
  platform::WindowHandle find(const std::string& wantedClass, const std::string& wantedCaption) override;
  void restore(platform::WindowHandle window) override;
  /// The main window gives the focus to its Continue button.
  void focus(platform::WindowHandle window) override;

 private:
  MainWindowAdapter& mainWindow_;
};

}  // namespace win32
