// The window that asks for a disk. It does not wait by itself: the program looks for the disk while it is open.
#pragma once

#include <optional>

#include "platform/screen.h"
#include "platform/win32/windows_api.h"

namespace win32 {

class DiskDialog {
 public:
  explicit DiskDialog(HINSTANCE instance) : instance_(instance) {}
  ~DiskDialog() { close(); }
  DiskDialog(const DiskDialog&) = delete;
  DiskDialog& operator=(const DiskDialog&) = delete;

  /// Opens it over `owner` (null for none), which takes nothing until it is closed.
  void open(HWND owner, const platform::DiskRequest& request);
  void close();
  std::optional<platform::DiskEvent> takeEvent();
  /// True when the message was the window's, which has taken it: its keys.
  bool translate(MSG& message);

  /// Null while it is not open.
  HWND handle() const { return window_; }

 private:
  static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);

  HINSTANCE instance_;
  HWND window_ = nullptr;
  HWND owner_ = nullptr;
  std::optional<platform::DiskEvent> event_;
};

}  // namespace win32
