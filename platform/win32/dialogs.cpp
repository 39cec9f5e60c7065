#include "platform/win32/dialogs.h"

#include "platform/win32/system_library.h"
#include "platform/win32/windows_api.h"

#include <commdlg.h>

namespace win32 {

using platform::BoxAnswer;
using platform::BoxButtons;
using platform::BoxIcon;
using platform::MessageBoxRequest;
using platform::OpenFileRequest;

namespace {

UINT iconFlag(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Critical:
      return MB_ICONHAND;
    case BoxIcon::Question:
      return MB_ICONQUESTION;
    case BoxIcon::Exclamation:
      return MB_ICONEXCLAMATION;
    case BoxIcon::Information:
      return MB_ICONASTERISK;
    case BoxIcon::None:
      break;
  }
  return 0;
}

UINT buttonFlags(BoxButtons buttons, BoxAnswer preferred) {
  switch (buttons) {
    case BoxButtons::YesNo:
      return MB_YESNO | (preferred == BoxAnswer::No ? MB_DEFBUTTON2 : MB_DEFBUTTON1);
    case BoxButtons::RetryCancel:
      return MB_RETRYCANCEL | (preferred == BoxAnswer::Cancel ? MB_DEFBUTTON2 : MB_DEFBUTTON1);
    case BoxButtons::Ok:
      break;
  }
  return MB_OK;
}

/// The answer that asks for nothing: of a box that could not be shown.
BoxAnswer quietAnswer(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::YesNo:
      return BoxAnswer::No;
    case BoxButtons::RetryCancel:
      return BoxAnswer::Cancel;
    case BoxButtons::Ok:
      break;
  }
  return BoxAnswer::Ok;
}

/// Puts the current folder back at its end.
class CurrentFolder {
 public:
  CurrentFolder() {
    DWORD length = GetCurrentDirectoryA(sizeof path_, path_);
    if (length >= sizeof path_) path_[0] = '\0';
  }
  ~CurrentFolder() {
    if (path_[0] != '\0') SetCurrentDirectoryA(path_);
  }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  char path_[MAX_PATH] = "";
};

}  // namespace

BoxAnswer showMessageBox(HWND owner, const MessageBoxRequest& request) {
  UINT modality = owner == nullptr ? MB_TASKMODAL : MB_APPLMODAL;
  UINT flags = iconFlag(request.icon) | buttonFlags(request.buttons, request.defaultAnswer) | modality;
  switch (MessageBoxA(owner, request.text.c_str(), request.title.c_str(), flags | MB_SETFOREGROUND)) {
    case IDOK:
      return BoxAnswer::Ok;
    case IDCANCEL:
      return BoxAnswer::Cancel;
    case IDRETRY:
      return BoxAnswer::Retry;
    case IDYES:
      return BoxAnswer::Yes;
    case IDNO:
      return BoxAnswer::No;
    default:
      return quietAnswer(request.buttons);
  }
}

std::optional<std::string> chooseFile(HWND owner, const OpenFileRequest& request) {
  CurrentFolder restored;  // the dialog changes it, whatever its flags ask for
  char path[1024] = "";
  std::string filter = request.filterName + '\0' + request.filterPattern + '\0';
  OPENFILENAMEA dialog = {};
  dialog.lStructSize = OPENFILENAME_SIZE_VERSION_400A;
  dialog.hwndOwner = owner;
  dialog.lpstrFilter = filter.c_str();
  dialog.nFilterIndex = 1;
  dialog.lpstrFile = path;
  dialog.nMaxFile = sizeof path;
  dialog.lpstrInitialDir = request.folder.empty() ? nullptr : request.folder.c_str();
  dialog.lpstrTitle = request.title.c_str();
  dialog.lpstrDefExt = request.extension.empty() ? nullptr : request.extension.c_str();
  dialog.Flags = OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY;
  const SystemLibrary dialogs("comdlg32.dll");
  auto* const ask = dialogs.find<decltype(GetOpenFileNameA)>("GetOpenFileNameA");
  if (ask == nullptr || !ask(&dialog)) return std::nullopt;
  return std::string(path);
}

}  // namespace win32
