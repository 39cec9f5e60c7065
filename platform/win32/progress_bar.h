// The progress bar: a window class of its own, drawn by hand, because old systems have none without an extra library.
#pragma once

#include <string>

#include "platform/win32/windows_api.h"

namespace win32 {

inline constexpr wchar_t ProgressBarClass[] = L"QXInstallationAssistantProgress";

/// Makes the class known to the system; again is harmless.
void RegisterProgressBar(HINSTANCE instance);

/// Draws the bar at once, filled to `percent` (held within 0 to 100), with `text` centred in it. The text is its window
/// text as well.
void SetProgress(HWND bar, int percent, const std::string& text);

}  // namespace win32
