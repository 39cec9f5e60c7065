// The window with two password boxes.
#pragma once

#include "platform/dialogs.h"
#include "platform/win32/windows_api.h"

namespace win32 {

class PasswordWindow {
 public:
  explicit PasswordWindow(HINSTANCE instance) : instance_(instance) {}
  PasswordWindow(const PasswordWindow&) = delete;
  PasswordWindow& operator=(const PasswordWindow&) = delete;

  /// Shows it modally over `parent` (null for none). True when `accept` was content, false when it was left otherwise
  /// or could not be shown.
  bool show(HWND parent, const platform::PasswordRequest& request, const platform::PasswordCheck& accept);

  /// Null while it is not open.
  HWND window() const { return window_; }

 private:
  static INT_PTR CALLBACK procedure(HWND addressee, UINT message, WPARAM first, LPARAM second);
  void initialise(HWND made);
  void press(WORD button);

  HINSTANCE instance_;
  HWND window_ = nullptr;
  const platform::PasswordRequest* request_ = nullptr;
  const platform::PasswordCheck* accept_ = nullptr;
};

}  // namespace win32
