#include "platform/win32/password_dialog.h"

#include <string>

#include "platform/win32/dialog_template.h"

namespace win32 {

namespace {

enum Id : WORD {
  cmdOK = IDOK,
  cmdCancel = IDCANCEL,
  lblMessage = 100,
  lblPassword,
  txtPassword,
  lblPassword2,
  txtPassword2
};

constexpr DWORD PasswordBox = ES_PASSWORD | ES_AUTOHSCROLL | WS_TABSTOP;
constexpr int LongestPassword = 127;

// In tab order; each label stands before its box.
constexpr DialogItem Items[] = {
    {lblMessage, L"STATIC", SS_LEFT | SS_NOPREFIX, 0, 7, 7, 206, 26},
    {lblPassword, L"STATIC", SS_LEFT, 0, 7, 40, 70, 9},
    {txtPassword, L"EDIT", PasswordBox, WS_EX_CLIENTEDGE, 80, 38, 133, 13},
    {lblPassword2, L"STATIC", SS_LEFT, 0, 7, 57, 70, 9},
    {txtPassword2, L"EDIT", PasswordBox, WS_EX_CLIENTEDGE, 80, 55, 133, 13},
    {cmdOK, L"BUTTON", BS_DEFPUSHBUTTON | WS_TABSTOP, 0, 108, 78, 50, 14},
    {cmdCancel, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP, 0, 163, 78, 50, 14},
};
constexpr DWORD Style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFOREGROUND | DS_CENTER;
constexpr DialogLayout Layout = {L"", Style, 220, 99, Items};

std::string textOf(HWND box) {
  char text[LongestPassword + 1] = "";
  return std::string(text, GetWindowTextA(box, text, sizeof text));
}

}  // namespace

bool PasswordDialog::show(HWND owner, const platform::PasswordRequest& request, const platform::PasswordCheck& accept) {
  request_ = &request;
  accept_ = &accept;
  std::vector<WORD> description = dialogTemplate(Layout);
  INT_PTR result = DialogBoxIndirectParamA(instance_, reinterpret_cast<DLGTEMPLATE*>(description.data()), owner,
                                           procedure, reinterpret_cast<LPARAM>(this));
  window_ = nullptr;
  return result == IDOK;
}

INT_PTR CALLBACK PasswordDialog::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(window, GWLP_USERDATA, second);
    reinterpret_cast<PasswordDialog*>(second)->initialise(window);
    return FALSE;  // the focus is set
  }
  auto* self = reinterpret_cast<PasswordDialog*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (self == nullptr || message != WM_COMMAND) return FALSE;
  self->command(LOWORD(first));
  return TRUE;
}

void PasswordDialog::initialise(HWND window) {
  window_ = window;
  SetWindowTextA(window, request_->title.c_str());
  const struct {
    Id id;
    const std::string& text;
  } texts[] = {{lblMessage, request_->message},
               {lblPassword, request_->passwordLabel},
               {lblPassword2, request_->confirmationLabel},
               {cmdOK, request_->okCaption},
               {cmdCancel, request_->cancelCaption}};
  for (const auto& item : texts) SetWindowTextA(GetDlgItem(window, item.id), item.text.c_str());
  for (Id box : {txtPassword, txtPassword2}) SendMessageA(GetDlgItem(window, box), EM_LIMITTEXT, LongestPassword, 0);
  SetForegroundWindow(window);
  SetFocus(GetDlgItem(window, txtPassword));
}

void PasswordDialog::command(WORD id) {
  if (id == cmdCancel) EndDialog(window_, IDCANCEL);
  if (id != cmdOK) return;
  if ((*accept_)(textOf(GetDlgItem(window_, txtPassword)), textOf(GetDlgItem(window_, txtPassword2)))) {
    EndDialog(window_, IDOK);
    return;
  }
  HWND first = GetDlgItem(window_, txtPassword);
  SetFocus(first);
  SendMessageA(first, EM_SETSEL, 0, -1);
}

}  // namespace win32
