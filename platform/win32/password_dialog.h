// The window with two password boxes.
#pragma once

#include "platform/screen.h"
#include "platform/win32/windows_api.h"

namespace win32 {

class PasswordDialog {
 public:
  explicit PasswordDialog(HINSTANCE instance) : instance_(instance) {}
  PasswordDialog(const PasswordDialog&) = delete;
  PasswordDialog& operator=(const PasswordDialog&) = delete;

  /// Shows it modally over `owner` (null for none). True when `accept` was content, false when it was left otherwise or
  /// could not be shown.
  bool show(HWND owner, const platform::PasswordRequest& request, const platform::PasswordCheck& accept);

  /// Null while it is not open.
  HWND handle() const { return window_; }

 private:
  static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);
  void initialise(HWND window);
  void command(WORD id);

  HINSTANCE instance_;
  HWND window_ = nullptr;
  const platform::PasswordRequest* request_ = nullptr;
  const platform::PasswordCheck* accept_ = nullptr;
};

}  // namespace win32
