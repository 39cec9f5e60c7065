#include "platform/win32/disk_window.h"

#include <utility>
#include <vector>

#include "platform/win32/dialog_template.h"

namespace win32 {

namespace {

enum Id : WORD { OkButton = IDOK, CancelButton = IDCANCEL, PromptLabel = 100 };

// In tab order.
constexpr DialogItem Items[] = {
    {PromptLabel, L"STATIC", SS_LEFT | SS_NOPREFIX, 0, 7, 7, 206, 34},
    {OkButton, L"BUTTON", BS_DEFPUSHBUTTON | WS_TABSTOP, 0, 108, 47, 50, 14},
    {CancelButton, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP, 0, 163, 47, 50, 14},
};
constexpr DWORD Style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFOREGROUND | DS_CENTER;
constexpr DialogLayout Layout = {L"", Style, 220, 68, Items};

}  // namespace

void DiskWindow::open(HWND parent, const platform::DiskRequest& request) {
  close();
  std::vector<WORD> description = DialogTemplate(Layout);
  window_ = CreateDialogIndirectParamA(instance_, reinterpret_cast<DLGTEMPLATE*>(description.data()), parent, procedure,
                                       reinterpret_cast<LPARAM>(this));
  if (window_ == nullptr) return;
  SetWindowTextA(window_, request.title.c_str());
  SetWindowTextA(GetDlgItem(window_, PromptLabel), request.prompt.c_str());
  SetWindowTextA(GetDlgItem(window_, OkButton), request.okCaption.c_str());
  SetWindowTextA(GetDlgItem(window_, CancelButton), request.cancelCaption.c_str());
  parent_ = parent;
  if (parent_ != nullptr) EnableWindow(parent_, FALSE);
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
}

// The parent answers again before the window goes, or another program would come to the front.
void DiskWindow::close() {
  if (window_ == nullptr) return;
  if (parent_ != nullptr) EnableWindow(parent_, TRUE);
  parent_ = nullptr;
  DestroyWindow(std::exchange(window_, nullptr));
  event_.reset();
}

std::optional<platform::DiskEvent> DiskWindow::takeEvent() {
  return std::exchange(event_, std::nullopt);
}

bool DiskWindow::translate(MSG& message) {
  return window_ != nullptr && IsDialogMessageA(window_, &message);
}

INT_PTR CALLBACK DiskWindow::procedure(HWND addressee, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(addressee, GWLP_USERDATA, second);
    return TRUE;
  }
  auto* self = reinterpret_cast<DiskWindow*>(GetWindowLongPtrA(addressee, GWLP_USERDATA));
  if (self == nullptr || message != WM_COMMAND) return FALSE;
  if (LOWORD(first) == OkButton) self->event_ = platform::DiskEvent::Ok;
  if (LOWORD(first) == CancelButton) self->event_ = platform::DiskEvent::Cancel;
  return TRUE;
}

}  // namespace win32
