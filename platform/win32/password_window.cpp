#include "platform/win32/password_window.h"

#include "platform/win32/dialog_template.h"
#include "platform/win32/system_window.h"

namespace win32 {

namespace {

enum Id : WORD {
  OkButton = IDOK,
  CancelButton = IDCANCEL,
  MessageLabel = 100,
  PasswordLabel,
  PasswordBox,
  ConfirmationLabel,
  ConfirmationBox
};

constexpr DWORD BoxStyle = ES_PASSWORD | ES_AUTOHSCROLL | WS_TABSTOP;
constexpr int LongestPassword = 127;

// In tab order; each label stands before its box.
constexpr DialogItem Items[] = {
    {MessageLabel, L"STATIC", SS_LEFT | SS_NOPREFIX, 0, 7, 7, 206, 26},
    {PasswordLabel, L"STATIC", SS_LEFT, 0, 7, 40, 70, 9},
    {PasswordBox, L"EDIT", BoxStyle, WS_EX_CLIENTEDGE, 80, 38, 133, 13},
    {ConfirmationLabel, L"STATIC", SS_LEFT, 0, 7, 57, 70, 9},
    {ConfirmationBox, L"EDIT", BoxStyle, WS_EX_CLIENTEDGE, 80, 55, 133, 13},
    {OkButton, L"BUTTON", BS_DEFPUSHBUTTON | WS_TABSTOP, 0, 108, 78, 50, 14},
    {CancelButton, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP, 0, 163, 78, 50, 14},
};
constexpr DWORD Style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFOREGROUND | DS_CENTER;
constexpr DialogLayout Layout = {L"", Style, 220, 99, Items};

}  // namespace

bool PasswordWindow::show(HWND parent, const platform::PasswordRequest& request,
                          const platform::PasswordCheck& accept) {
  request_ = &request;
  accept_ = &accept;
  std::vector<WORD> description = DialogTemplate(Layout);
  INT_PTR pressed = DialogBoxIndirectParamA(instance_, reinterpret_cast<DLGTEMPLATE*>(description.data()), parent,
                                            procedure, reinterpret_cast<LPARAM>(this));
  window_ = nullptr;
  return pressed == IDOK;
}

INT_PTR CALLBACK PasswordWindow::procedure(HWND addressee, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(addressee, GWLP_USERDATA, second);
    reinterpret_cast<PasswordWindow*>(second)->initialise(addressee);
    return FALSE;  // the focus is set
  }
  auto* self = reinterpret_cast<PasswordWindow*>(GetWindowLongPtrA(addressee, GWLP_USERDATA));
  if (self == nullptr || message != WM_COMMAND) return FALSE;
  self->press(LOWORD(first));
  return TRUE;
}

void PasswordWindow::initialise(HWND made) {
  window_ = made;
  SetWindowTextA(made, request_->title.c_str());
  const struct {
    Id id;
    const std::string& text;
  } texts[] = {{MessageLabel, request_->message},
               {PasswordLabel, request_->passwordLabel},
               {ConfirmationLabel, request_->confirmationLabel},
               {OkButton, request_->okCaption},
               {CancelButton, request_->cancelCaption}};
  for (const auto& item : texts) SetWindowTextA(GetDlgItem(made, item.id), item.text.c_str());
  for (Id box : {PasswordBox, ConfirmationBox}) SendMessageA(GetDlgItem(made, box), EM_LIMITTEXT, LongestPassword, 0);
  SetForegroundWindow(made);
  SetFocus(GetDlgItem(made, PasswordBox));
}

void PasswordWindow::press(WORD button) {
  if (button == CancelButton) EndDialog(window_, IDCANCEL);
  if (button != OkButton) return;
  if ((*accept_)(TextOf(GetDlgItem(window_, PasswordBox)), TextOf(GetDlgItem(window_, ConfirmationBox)))) {
    EndDialog(window_, IDOK);
    return;
  }
  HWND box = GetDlgItem(window_, PasswordBox);
  SetFocus(box);
  SendMessageA(box, EM_SETSEL, 0, -1);
}

}  // namespace win32
