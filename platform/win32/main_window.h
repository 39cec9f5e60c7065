// The main window: its controls, and what a person did with it.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "platform/main_window.h"
#include "platform/win32/common_controls.h"
#include "platform/win32/disk_window.h"
#include "platform/win32/session_window.h"
#include "platform/win32/tray_icon.h"

namespace win32 {

/// The system's window is made when it is first needed: a run that shows none need not pay for it.
class MainWindowAdapter final : public platform::MainWindow {
 public:
  /// Messages go through the disk window first, which takes its own keys.
  MainWindowAdapter(HINSTANCE instance, DiskWindow& diskWindow)
      : instance_(instance), diskWindow_(diskWindow), trayIcon_(instance), sessionWindow_(instance) {}
  ~MainWindowAdapter() override { destroy(); }
  MainWindowAdapter(const MainWindowAdapter&) = delete;
  MainWindowAdapter& operator=(const MainWindowAdapter&) = delete;

  void create(const std::string& caption) override;
  platform::WindowHandle handle() override;
  void centre() override;
  void show() override;
  bool visible() override;
  void destroy() override;

  void setText(platform::Control control, const std::string& words) override;
  std::string text(platform::Control control) override;
  /// Keeps the focus on a control that can take it.
  void setEnabled(platform::Control control, bool enabled) override;
  void drawProgress(int percent, const std::string& words) override;
  void repaint() override;

  int statusAreaHeight() override;
  int statusTextHeight(const std::string& words) override;
  void showStatusScrollBar(bool shown) override;

  void pumpMessages() override;
  std::optional<platform::WindowEvent> takeEvent() override;
  platform::WindowEvent waitForEvent() override;

  void setBusyCursor(bool busy) override;
  void objectToSessionEnd(bool objects) override;
  void whenSessionEnds(std::function<void()> action) override;
  bool addTrayIcon(const std::string& tip) override;
  void removeTrayIcon() override;

  // For the other adapters.

  /// The system's window; null before `create` and after `destroy`.
  HWND window();
  /// Makes it the active window, with the focus on Continue.
  void bringToFront();

 private:
  static LRESULT CALLBACK procedure(HWND addressee, UINT message, WPARAM first, LPARAM second);
  void make();
  /// A part of the window; null when there is no window.
  HWND part(platform::Control control);
  void scrollToNewestLine();

  void dispatch(MSG& message);
  /// Handles keys that move around in the window; false for messages that go the common way.
  bool translate(MSG& message);
  void escape();
  /// True for a message that needs no further answer.
  bool answer(UINT message, WPARAM first, LPARAM second);
  void press(WORD button);
  void queue(platform::WindowEvent event);

  HINSTANCE instance_;
  DiskWindow& diskWindow_;
  std::optional<CommonControls> commonControls_;
  TrayIcon trayIcon_;
  SessionWindow sessionWindow_;
  std::optional<std::string> caption_;
  HWND window_ = nullptr;
  bool busy_ = false;
  std::deque<platform::WindowEvent> events_;
};

}  // namespace win32
