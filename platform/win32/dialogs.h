// Message boxes and the open-file dialog.
#pragma once

#include <optional>
#include <string>

#include "platform/screen.h"
#include "platform/win32/windows_api.h"

namespace win32 {

/// Without an owner the box comes to the front on its own.
platform::BoxAnswer showMessageBox(HWND owner, const platform::MessageBoxRequest& request);

std::optional<std::string> chooseFile(HWND owner, const platform::OpenFileRequest& request);

}  // namespace win32
