// The window that the system asks whether the session may end: never shown, and there on a silent run as well.
#pragma once

#include <functional>

#include "platform/win32/windows_api.h"

namespace win32 {

class SessionWindow {
 public:
  explicit SessionWindow(HINSTANCE instance) : instance_(instance) {}
  ~SessionWindow();
  SessionWindow(const SessionWindow&) = delete;
  SessionWindow& operator=(const SessionWindow&) = delete;

  /// Whether the system's question is answered with No.
  void object(bool objects);
  /// Called within the system's message: once it returns, the system may end the process.
  void whenItEnds(std::function<void()> action);

 private:
  static LRESULT CALLBACK procedure(HWND addressee, UINT message, WPARAM first, LPARAM second);
  /// The window belongs to the thread that makes it.
  void make();

  HINSTANCE instance_;
  HWND window_ = nullptr;
  bool objects_ = false;
  std::function<void()> action_;
};

}  // namespace win32
