#include "platform/win32/main_window.h"

#include <algorithm>

#include "platform/win32/common_controls.h"
#include "platform/win32/dialog_template.h"
#include "platform/win32/progress_bar.h"
#include "platform/win32/resource_ids.h"

namespace win32 {

using platform::Control;
using platform::WindowEvent;

namespace {

// A second copy finds the window by this name and the caption.
constexpr char ClassName[] = "QXInstallationAssistantMain";
constexpr wchar_t WideClassName[] = L"QXInstallationAssistantMain";

// Continue and Cancel carry the numbers that the Enter and Escape keys stand for in a dialog.
enum Id : WORD {
  ContinueId = IDOK,
  CancelId = IDCANCEL,
  AboutId = 100,
  StatusId,
  ActionId,
  ComponentId,
  ProgressId,
  LongMessageId,
  DividerId
};

constexpr DWORD LineLabel = SS_LEFTNOWORDWRAP | SS_NOPREFIX;
constexpr DWORD StatusStyle = ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_TABSTOP;

// In tab order: id, class, style, extended style, x, y, width, height.
constexpr DialogItem Items[] = {
    {StatusId, L"EDIT", StatusStyle, WS_EX_CLIENTEDGE, 7, 7, 276, 86},
    {ActionId, L"STATIC", LineLabel, 0, 7, 99, 276, 9},
    {ComponentId, L"STATIC", LineLabel, 0, 7, 111, 276, 9},
    {ProgressId, ProgressBarClass, 0, WS_EX_CLIENTEDGE, 7, 124, 276, 14},
    {LongMessageId, L"STATIC", SS_LEFT | SS_NOPREFIX, 0, 7, 143, 276, 26},
    {DividerId, L"STATIC", SS_ETCHEDHORZ, 0, 7, 173, 276, 1},
    {AboutId, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP, 0, 7, 179, 58, 14},
    {ContinueId, L"BUTTON", BS_DEFPUSHBUTTON | WS_TABSTOP, 0, 163, 179, 58, 14},
    {CancelId, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP, 0, 225, 179, 58, 14},
};
constexpr DialogLayout Layout = {WideClassName, WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX, 290, 200, Items};

Id idOf(Control control) {
  switch (control) {
    case Control::Status:
      return StatusId;
    case Control::Action:
      return ActionId;
    case Control::Component:
      return ComponentId;
    case Control::LongMessage:
      return LongMessageId;
    case Control::Progress:
      return ProgressId;
    case Control::About:
      return AboutId;
    case Control::Continue:
      return ContinueId;
    case Control::Cancel:
      break;
  }
  return CancelId;
}

void registerMainWindow(HINSTANCE instance, WNDPROC procedure) {
  WNDCLASSA description = {};
  description.lpfnWndProc = procedure;
  description.cbWndExtra = DLGWINDOWEXTRA;
  description.hInstance = instance;
  description.hIcon = LoadIconA(instance, MAKEINTRESOURCEA(PROGRAM_ICON));
  description.hCursor = LoadCursor(nullptr, IDC_ARROW);
  description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  description.lpszClassName = ClassName;
  RegisterClassA(&description);
}

}  // namespace

void MainWindow::create(const std::string& caption) {
  if (window_ == nullptr) {
    loadCommonControls();
    registerProgressBar(instance_);
    registerMainWindow(instance_, procedure);
    std::vector<WORD> description = dialogTemplate(Layout);
    window_ =
        CreateDialogIndirectParamA(instance_, reinterpret_cast<DLGTEMPLATE*>(description.data()), nullptr, nullptr, 0);
    if (window_ == nullptr) return;
    SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    ShowScrollBar(control(Control::Status), SB_VERT, FALSE);
  }
  SetWindowTextA(window_, caption.c_str());
}

void MainWindow::destroy() {
  if (window_ != nullptr) DestroyWindow(window_);
  window_ = nullptr;
}

void MainWindow::show() {
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
  SetFocus(control(Control::Continue));
  UpdateWindow(window_);
}

void MainWindow::centre() {
  RECT frame;
  if (!GetWindowRect(window_, &frame)) return;
  int x = (GetSystemMetrics(SM_CXSCREEN) - (frame.right - frame.left)) / 2;
  int y = (GetSystemMetrics(SM_CYSCREEN) - (frame.bottom - frame.top)) / 2;
  SetWindowPos(window_, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

HWND MainWindow::control(Control control) const {
  return window_ == nullptr ? nullptr : GetDlgItem(window_, idOf(control));
}

void MainWindow::setText(Control control, const std::string& text) {
  HWND target = this->control(control);
  SetWindowTextA(target, text.c_str());
  if (control != Control::Status) return;
  SendMessageA(target, EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
  SendMessageA(target, EM_SCROLLCARET, 0, 0);  // the newest line stays in sight
}

void MainWindow::setEnabled(Control control, bool enabled) {
  HWND target = this->control(control);
  HWND status = this->control(Control::Status);
  if (!enabled && GetFocus() == target) SetFocus(status);  // a disabled control would swallow all keys
  EnableWindow(target, enabled);
  if (enabled && control == Control::Continue && GetFocus() == status) SetFocus(target);
}

void MainWindow::setBusyCursor(bool busy) {
  busy_ = busy;
  SetCursor(LoadCursor(nullptr, busy ? IDC_WAIT : IDC_ARROW));
}

int MainWindow::statusTextHeight(const std::string& text) const {
  HWND status = control(Control::Status);
  if (status == nullptr) return 0;
  RECT area = statusArea(status);
  HDC surface = GetDC(status);
  HGDIOBJ before = SelectObject(surface, reinterpret_cast<HFONT>(SendMessageA(status, WM_GETFONT, 0, 0)));
  RECT needed = {0, 0, area.right - area.left, 0};
  int height = DrawTextA(surface, text.c_str(), static_cast<int>(text.size()), &needed,
                         DT_CALCRECT | DT_EDITCONTROL | DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX);
  SelectObject(surface, before);
  ReleaseDC(status, surface);
  return height;
}

std::optional<WindowEvent> MainWindow::takeEvent() {
  if (events_.empty()) return std::nullopt;
  WindowEvent event = events_.front();
  events_.pop_front();
  return event;
}

// A status text that has the focus would answer Escape by closing the window.
bool MainWindow::translate(MSG& message) const {
  if (window_ == nullptr) return false;
  bool ours = message.hwnd == window_ || IsChild(window_, message.hwnd);
  if (ours && message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) {
    PostMessageA(window_, WM_COMMAND, CancelId, 0);
    return true;
  }
  return IsDialogMessageA(window_, &message) != FALSE;
}

LRESULT CALLBACK MainWindow::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  auto* self = reinterpret_cast<MainWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (self != nullptr && self->handle(message, first)) return message == WM_SETCURSOR ? TRUE : 0;
  return DefDlgProcA(window, message, first, second);
}

bool MainWindow::handle(UINT message, WPARAM first) {
  switch (message) {
    case WM_COMMAND:
      if (HIWORD(first) == BN_CLICKED) command(LOWORD(first));
      return true;
    case WM_CLOSE:
      queue(WindowEvent::Close);
      return true;
    case WM_SETCURSOR:
      if (busy_) SetCursor(LoadCursor(nullptr, IDC_WAIT));
      return busy_;
    case WM_NCDESTROY:
      window_ = nullptr;
      return false;
    default:
      return false;
  }
}

// The keyboard sends the numbers of disabled buttons too.
void MainWindow::command(WORD id) {
  if (!IsWindowEnabled(GetDlgItem(window_, id))) return;
  if (id == AboutId) queue(WindowEvent::About);
  if (id == ContinueId) queue(WindowEvent::Continue);
  if (id == CancelId) queue(WindowEvent::Cancel);
}

// Pressing the same thing again before it was looked at says nothing new.
void MainWindow::queue(WindowEvent event) {
  if (std::find(events_.begin(), events_.end(), event) == events_.end()) events_.push_back(event);
}

RECT statusArea(HWND status) {
  RECT area = {};
  SendMessageA(status, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&area));
  return area;
}

}  // namespace win32
