// Dialogs described by a table instead of a resource, in dialog units: the system scales them with the dialog font and
// with it to the resolution of the screen.
#pragma once

#include <span>
#include <vector>

#include "platform/win32/windows_api.h"

namespace win32 {

struct DialogItem {
  WORD id;
  const wchar_t* windowClass;
  DWORD style;  ///< in addition to child and visible
  DWORD extendedStyle;
  short x, y, width, height;
  const wchar_t* text = L"";
};

struct DialogLayout {
  const wchar_t* windowClass;  ///< "" for the system's own dialog class
  DWORD style;
  short width, height;
  std::span<const DialogItem> items;  ///< in tab order
};

/// The table as the system takes it (CreateDialogIndirectParamA).
std::vector<WORD> DialogTemplate(const DialogLayout& layout);

}  // namespace win32
