#include "platform/win32/dialogs.h"

#include "platform/win32/system_library.h"

#include <commdlg.h>
#include <shellapi.h>

namespace win32 {

using platform::BoxAnswer;
using platform::BoxButtons;
using platform::BoxIcon;
using platform::MessageBoxRequest;
using platform::OpenFileRequest;

namespace {

UINT IconFlag(BoxIcon icon) {
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

UINT ButtonFlags(BoxButtons buttons, BoxAnswer preferred) {
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
BoxAnswer QuietAnswer(BoxButtons buttons) {
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
class FolderKeeper {
 public:
  FolderKeeper() {
    DWORD length = GetCurrentDirectoryA(sizeof path_, path_);
    if (length >= sizeof path_) path_[0] = '\0';
  }
  ~FolderKeeper() {
    if (path_[0] != '\0') SetCurrentDirectoryA(path_);
  }
  FolderKeeper(const FolderKeeper&) = delete;
  FolderKeeper& operator=(const FolderKeeper&) = delete;

 private:
  char path_[MAX_PATH] = "";
};

}  // namespace

HWND DialogsAdapter::parent() {
  if (passwordWindow_.window() != nullptr) return passwordWindow_.window();
  if (diskWindow_.window() != nullptr) return diskWindow_.window();
  return mainWindow_.visible() ? mainWindow_.window() : nullptr;
}

BoxAnswer DialogsAdapter::messageBox(const MessageBoxRequest& request) {
  HWND over = parent();
  UINT modality = over == nullptr ? MB_TASKMODAL : MB_APPLMODAL;
  UINT flags = IconFlag(request.icon) | ButtonFlags(request.buttons, request.defaultAnswer) | modality;
  switch (MessageBoxA(over, request.text.c_str(), request.title.c_str(), flags | MB_SETFOREGROUND)) {
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
      return QuietAnswer(request.buttons);
  }
}

std::optional<std::string> DialogsAdapter::chooseFile(const OpenFileRequest& request) {
  FolderKeeper kept;  // the dialog changes it, whatever its flags ask for
  char path[1024] = "";
  std::string filter = request.filterName + '\0' + request.filterPattern + '\0';
  OPENFILENAMEA dialog = {};
  dialog.lStructSize = OPENFILENAME_SIZE_VERSION_400A;
  dialog.hwndOwner = parent();
  dialog.lpstrFilter = filter.c_str();
  dialog.nFilterIndex = 1;
  dialog.lpstrFile = path;
  dialog.nMaxFile = sizeof path;
  dialog.lpstrInitialDir = request.folder.empty() ? nullptr : request.folder.c_str();
  dialog.lpstrTitle = request.title.c_str();
  dialog.lpstrDefExt = request.extension.empty() ? nullptr : request.extension.c_str();
  dialog.Flags = OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY;
  const SystemLibrary library("comdlg32.dll");
  auto* const ask = library.find<decltype(GetOpenFileNameA)>("GetOpenFileNameA");
  if (ask == nullptr || !ask(&dialog)) return std::nullopt;
  return std::string(path);
}

bool DialogsAdapter::askPassword(const platform::PasswordRequest& request, const platform::PasswordCheck& accept) {
  return passwordWindow_.show(parent(), request, accept);
}

void DialogsAdapter::openDiskWindow(const platform::DiskRequest& request) {
  diskWindow_.open(parent(), request);
}

std::optional<platform::DiskEvent> DialogsAdapter::takeDiskEvent() {
  return diskWindow_.takeEvent();
}

void DialogsAdapter::closeDiskWindow() {
  diskWindow_.close();
}

// NT 3.51 has the function as well, but not every early system has the library.
bool DialogsAdapter::openDocument(const std::string& path) {
  constexpr INT_PTR lastError = 32;
  static_assert(sizeof(HINSTANCE) == sizeof(INT_PTR));
  SystemLibrary shell("shell32.dll");
  auto* execute = shell.find<decltype(ShellExecuteA)>("ShellExecuteA");
  if (execute == nullptr) return false;
  HINSTANCE outcome = execute(parent(), "open", path.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<INT_PTR>(outcome) > lastError;
}

}  // namespace win32
