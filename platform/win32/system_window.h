// Windows of the system: their handles on both sides of the ports, their texts, and the surfaces that they are drawn
// on.
#pragma once

#include <string>

#include "platform/win32/windows_api.h"
#include "platform/window_handle.h"

namespace win32 {

inline HWND SystemWindow(platform::WindowHandle window) {
  return reinterpret_cast<HWND>(window.value);
}

inline platform::WindowHandle PortWindow(HWND window) {
  return {reinterpret_cast<std::uintptr_t>(window)};
}

/// A window's caption or a control's text, whole; "" for a window that is gone.
std::string TextOf(HWND window);

/// What a window is measured on, for as long as its scope.
class WindowSurface {
 public:
  explicit WindowSurface(HWND window) : window_(window), surface_(GetDC(window)) {}
  ~WindowSurface() {
    if (surface_ != nullptr) ReleaseDC(window_, surface_);
  }
  WindowSurface(const WindowSurface&) = delete;
  WindowSurface& operator=(const WindowSurface&) = delete;

  HDC get() const { return surface_; }

 private:
  HWND window_;
  HDC surface_;
};

/// What a window is painted on in answer to the system's request.
class PaintSurface {
 public:
  explicit PaintSurface(HWND window) : window_(window), surface_(BeginPaint(window, &request_)) {}
  ~PaintSurface() { EndPaint(window_, &request_); }
  PaintSurface(const PaintSurface&) = delete;
  PaintSurface& operator=(const PaintSurface&) = delete;

  HDC get() const { return surface_; }

 private:
  HWND window_;
  PAINTSTRUCT request_ = {};
  HDC surface_;
};

/// A surface writes with the font of this window, and with its own again at the end.
class FontOfWindow {
 public:
  FontOfWindow(HDC surface, HWND window);
  ~FontOfWindow() {
    if (before_ != nullptr) SelectObject(surface_, before_);
  }
  FontOfWindow(const FontOfWindow&) = delete;
  FontOfWindow& operator=(const FontOfWindow&) = delete;

 private:
  HDC surface_;
  HGDIOBJ before_;
};

}  // namespace win32
