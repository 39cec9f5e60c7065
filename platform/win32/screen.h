// The screen of this machine: the main window, dialogs, the notification area and the windows of other programs.
#pragma once

#include "platform/screen.h"
#include "platform/win32/disk_dialog.h"
#include "platform/win32/main_window.h"
#include "platform/win32/password_dialog.h"
#include "platform/win32/tray.h"

namespace win32 {

class Screen : public platform::Screen {
 public:
  explicit Screen(HINSTANCE instance)
      : window_(instance), passwordDialog_(instance), diskDialog_(instance), tray_(instance) {}

  void createMainWindow(const std::string& caption) override;
  platform::WindowHandle mainWindow() override;
  void centreMainWindow() override;
  void showMainWindow() override;
  bool mainWindowVisible() override;
  void destroyMainWindow() override;

  void setText(platform::Control control, const std::string& text) override;
  std::string text(platform::Control control) override;
  void setEnabled(platform::Control control, bool enabled) override;
  void drawProgress(int percent, const std::string& text) override;
  void repaint() override;

  int statusAreaHeight() override;
  int statusTextHeight(const std::string& text) override;
  void showStatusScrollBar(bool shown) override;

  void pumpMessages() override;
  std::optional<platform::WindowEvent> takeEvent() override;
  platform::WindowEvent waitForEvent() override;

  platform::BoxAnswer messageBox(const platform::MessageBoxRequest& request) override;
  std::optional<std::string> chooseFile(const platform::OpenFileRequest& request) override;
  bool askPassword(const platform::PasswordRequest& request, const platform::PasswordCheck& accept) override;
  void openDiskWindow(const platform::DiskRequest& request) override;
  std::optional<platform::DiskEvent> takeDiskEvent() override;
  void closeDiskWindow() override;
  bool openDocument(const std::string& path) override;
  void setBusyCursor(bool busy) override;

  bool addTrayIcon(const std::string& tip) override;
  void removeTrayIcon() override;

  std::string className(platform::WindowHandle window, int capacity) override;
  std::string caption(platform::WindowHandle window) override;
  void setCaption(platform::WindowHandle window, const std::string& caption) override;
  platform::WindowHandle findWindow(const std::string& className, const std::string& caption) override;
  void restoreWindow(platform::WindowHandle window) override;
  void focusWindow(platform::WindowHandle window) override;

 private:
  /// The owner of dialogs: the password or the disk window while it is open, or else the main window while a person can
  /// see it.
  HWND dialogOwner();
  void dispatch(MSG& message);

  MainWindow window_;
  PasswordDialog passwordDialog_;
  DiskDialog diskDialog_;
  Tray tray_;
};

}  // namespace win32
