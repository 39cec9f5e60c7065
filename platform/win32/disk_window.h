// The window that asks for a disk. It does not wait by itself: the program looks for the disk while it is open.
#pragma once

#include <optional>

#include "platform/dialogs.h"
#include "platform/win32/windows_api.h"

namespace win32 {

class DiskWindow {
 public:
  explicit DiskWindow(HINSTANCE instance) : instance_(instance) {}
  ~DiskWindow() { close(); }
  DiskWindow(const DiskWindow&) = delete;
  DiskWindow& operator=(const DiskWindow&) = delete;

  /// Opens it over `parent` (null for none), which takes nothing until it is closed.
  void open(HWND parent, const platform::DiskRequest& request);
  void close();
  std::optional<platform::DiskEvent> takeEvent();
  /// True when the message was the window's, which has taken it: its keys.
  bool translate(MSG& message);

  /// Null while it is not open.
  HWND window() const { return window_; }

 private:
  static INT_PTR CALLBACK procedure(HWND addressee, UINT message, WPARAM first, LPARAM second);

  HINSTANCE instance_;
  HWND window_ = nullptr;
  HWND parent_ = nullptr;
  std::optional<platform::DiskEvent> event_;
};

}  // namespace win32
