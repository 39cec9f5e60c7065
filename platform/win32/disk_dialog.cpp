#include "platform/win32/disk_dialog.h"

#include <utility>
#include <vector>

#include "platform/win32/dialog_template.h"

namespace win32 {

namespace {

enum Id : WORD { cmdOK = IDOK, cmdCancel = IDCANCEL, labPrompt = 100 };

// In tab order.
constexpr DialogItem Items[] = {
    {labPrompt, L"STATIC", SS_LEFT | SS_NOPREFIX, 0, 7, 7, 206, 34},
    {cmdOK, L"BUTTON", BS_DEFPUSHBUTTON | WS_TABSTOP, 0, 108, 47, 50, 14},
    {cmdCancel, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP, 0, 163, 47, 50, 14},
};
constexpr DWORD Style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFOREGROUND | DS_CENTER;
constexpr DialogLayout Layout = {L"", Style, 220, 68, Items};

}  // namespace

void DiskDialog::open(HWND owner, const platform::DiskRequest& request) {
  close();
  std::vector<WORD> description = dialogTemplate(Layout);
  window_ = CreateDialogIndirectParamA(instance_, reinterpret_cast<DLGTEMPLATE*>(description.data()), owner, procedure,
                                       reinterpret_cast<LPARAM>(this));
  if (window_ == nullptr) return;
  SetWindowTextA(window_, request.title.c_str());
  SetWindowTextA(GetDlgItem(window_, labPrompt), request.prompt.c_str());
  SetWindowTextA(GetDlgItem(window_, cmdOK), request.okCaption.c_str());
  SetWindowTextA(GetDlgItem(window_, cmdCancel), request.cancelCaption.c_str());
  owner_ = owner;
  if (owner_ != nullptr) EnableWindow(owner_, FALSE);
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
}

// The owner answers again before the window goes, or another program would come to the front.
void DiskDialog::close() {
  if (window_ == nullptr) return;
  if (owner_ != nullptr) EnableWindow(owner_, TRUE);
  owner_ = nullptr;
  DestroyWindow(std::exchange(window_, nullptr));
  event_.reset();
}

std::optional<platform::DiskEvent> DiskDialog::takeEvent() {
  return std::exchange(event_, std::nullopt);
}

bool DiskDialog::translate(MSG& message) {
  return window_ != nullptr && IsDialogMessageA(window_, &message);
}

INT_PTR CALLBACK DiskDialog::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(window, GWLP_USERDATA, second);
    return TRUE;
  }
  auto* self = reinterpret_cast<DiskDialog*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (self == nullptr || message != WM_COMMAND) return FALSE;
  if (LOWORD(first) == cmdOK) self->event_ = platform::DiskEvent::Ok;
  if (LOWORD(first) == cmdCancel) self->event_ = platform::DiskEvent::Cancel;
  return TRUE;
}

}  // namespace win32
