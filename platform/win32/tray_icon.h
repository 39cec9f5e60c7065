// The icon in the notification area.
#pragma once

#include <string>

#include "platform/win32/windows_api.h"

namespace win32 {

class TrayIcon {
 public:
  explicit TrayIcon(HINSTANCE instance) : instance_(instance) {}
  ~TrayIcon() { remove(); }
  TrayIcon(const TrayIcon&) = delete;
  TrayIcon& operator=(const TrayIcon&) = delete;

  /// Adds the icon, or changes its tip when it is there. False when the machine has no notification area.
  bool add(const std::string& tip);
  void remove();

 private:
  HINSTANCE instance_;
  HWND anchor_ = nullptr;  ///< a window that is never shown: the system ties each icon to one
};

}  // namespace win32
