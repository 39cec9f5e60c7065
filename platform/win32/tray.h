// The icon in the notification area.
#pragma once

#include <string>

#include "platform/win32/windows_api.h"

namespace win32 {

class Tray {
 public:
  explicit Tray(HINSTANCE instance) : instance_(instance) {}
  ~Tray() { remove(); }
  Tray(const Tray&) = delete;
  Tray& operator=(const Tray&) = delete;

  /// Adds the icon, or changes its tip when it is there. False when the machine has no notification area.
  bool add(const std::string& tip);
  void remove();

 private:
  HINSTANCE instance_;
  HWND owner_ = nullptr;  ///< a window that is never shown: the system ties each icon to one
};

}  // namespace win32
