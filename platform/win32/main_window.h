// The main window: its controls, its layout, and what a person did with it.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "platform/screen.h"
#include "platform/win32/windows_api.h"

namespace win32 {

/// The system's window is made when it is first needed: a run that shows none need not pay for it.
class MainWindow {
 public:
  explicit MainWindow(HINSTANCE instance) : instance_(instance) {}
  ~MainWindow() { destroy(); }
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  /// From here on there is a window, hidden; again only changes its caption.
  void create(const std::string& caption);
  void destroy();
  void show();
  /// Makes it the active window, with the focus on Continue.
  void bringToFront();
  void centre();

  /// Null before `create` and after its end, as are its controls.
  HWND handle();
  HWND control(platform::Control control);
  bool visible() const { return window_ != nullptr && IsWindowVisible(window_); }

  void setText(platform::Control control, const std::string& text);
  /// Keeps the focus on a control that can take it.
  void setEnabled(platform::Control control, bool enabled);
  void setBusyCursor(bool busy);
  void showStatusScrollBar(bool shown);
  /// Height of `text` as the status control would set it.
  int statusTextHeight(const std::string& text);

  /// The oldest thing that a person did and nobody took yet.
  std::optional<platform::WindowEvent> takeEvent();
  /// Handles keys that move around in the window; false for messages that go the common way.
  bool translate(MSG& message);

 private:
  void make();
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);
  bool handle(UINT message, WPARAM first, LPARAM second);
  void escape();
  void scrollToNewestLine();
  void command(WORD id);
  void queue(platform::WindowEvent event);

  HINSTANCE instance_;
  std::optional<std::string> caption_;
  HWND window_ = nullptr;
  bool busy_ = false;
  std::deque<platform::WindowEvent> events_;
};

/// Height of the area in which the status control sets its text.
RECT statusArea(HWND status);

}  // namespace win32
