#include "platform/win32/progress_bar.h"

#include <algorithm>

#include "platform/win32/system_window.h"

namespace win32 {

namespace {

constexpr char ClassName[] = "QXInstallationAssistantProgress";
constexpr int PercentOffset = 0;  // the class's extra bytes hold the percentage

struct Colours {
  int background;
  int text;
};

// One part of the bar: background and text in one stroke, cut to the part, so that nothing flickers.
void DrawPart(HDC surface, const RECT& part, POINT textAt, const std::string& text, Colours colours) {
  SetBkColor(surface, GetSysColor(colours.background));
  SetTextColor(surface, GetSysColor(colours.text));
  ExtTextOutA(surface, textAt.x, textAt.y, ETO_OPAQUE | ETO_CLIPPED, &part, text.c_str(),
              static_cast<UINT>(text.size()), nullptr);
}

void Draw(HWND bar, HDC surface) {
  FontOfWindow font(surface, GetParent(bar));
  RECT inner;
  GetClientRect(bar, &inner);
  std::string text = TextOf(bar);
  SIZE size = {};
  GetTextExtentPoint32A(surface, text.c_str(), static_cast<int>(text.size()), &size);
  POINT textAt = {(inner.right - size.cx) / 2, (inner.bottom - size.cy) / 2};

  RECT filled = inner;
  filled.right = MulDiv(inner.right, static_cast<int>(GetWindowLongA(bar, PercentOffset)), 100);
  RECT rest = inner;
  rest.left = filled.right;
  DrawPart(surface, filled, textAt, text, {COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT});
  DrawPart(surface, rest, textAt, text, {COLOR_WINDOW, COLOR_WINDOWTEXT});
}

LRESULT CALLBACK ProgressProcedure(HWND bar, UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case WM_PAINT: {
      PaintSurface surface(bar);
      Draw(bar, surface.get());
      return 0;
    }
    case WM_ERASEBKGND:
      return 1;  // painting covers everything
    case WM_SETTEXT:
      InvalidateRect(bar, nullptr, FALSE);
      break;
    default:
      break;
  }
  return DefWindowProcA(bar, message, first, second);
}

}  // namespace

void RegisterProgressBar(HINSTANCE instance) {
  WNDCLASSA description = {};
  description.style = CS_HREDRAW | CS_VREDRAW;
  description.lpfnWndProc = ProgressProcedure;
  description.cbWndExtra = sizeof(LONG);
  description.hInstance = instance;
  description.hCursor = LoadCursor(nullptr, IDC_ARROW);
  description.lpszClassName = ClassName;
  RegisterClassA(&description);
}

void SetProgress(HWND bar, int percent, const std::string& text) {
  SetWindowLongA(bar, PercentOffset, std::clamp(percent, 0, 100));
  SetWindowTextA(bar, text.c_str());
  UpdateWindow(bar);
}

}  // namespace win32
