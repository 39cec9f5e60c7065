#include "platform/win32/system_window.h"

namespace win32 {

namespace {

// A window that has no font of its own is drawn with the surface's.
HGDIOBJ SelectFontOf(HWND window, HDC surface) {
  auto font = reinterpret_cast<HFONT>(SendMessageA(window, WM_GETFONT, 0, 0));
  return font == nullptr ? nullptr : SelectObject(surface, font);
}

}  // namespace

std::string TextOf(HWND window) {
  int length = GetWindowTextLengthA(window);
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  text.resize(GetWindowTextA(window, text.data(), length + 1));
  return text;
}

FontOfWindow::FontOfWindow(HDC surface, HWND window) : surface_(surface), before_(SelectFontOf(window, surface)) {}

}  // namespace win32
