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
  cmdContinue = IDOK,
  cmdCancel = IDCANCEL,
  cmdAbout = 100,
  Image1,
  lblLongMessage,
  fraBuild,
  lblAction,
  lblComponent,
  picProgress,
  lblStatus,
  txtStatus,
  picHidden,
  fraDivider
};

constexpr DWORD Label = SS_LEFT | SS_NOPREFIX;
constexpr DWORD LineLabel = SS_LEFTNOWORDWRAP | SS_NOPREFIX;
constexpr DWORD StatusStyle = ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_TABSTOP;

// In tab order: id, class, style, extended style, x, y, width, height, text. A reader for the blind takes the label
// before the status text as its name; the other controls are named by their own texts.
constexpr DialogItem Items[] = {
    {Image1, L"STATIC", SS_ICON, 0, 7, 7, 20, 20},
    {lblLongMessage, L"STATIC", Label, 0, 38, 7, 255, 57},
    {fraBuild, L"BUTTON", BS_GROUPBOX, 0, 7, 66, 286, 61, L"Progress"},
    {lblAction, L"STATIC", LineLabel, 0, 14, 77, 272, 9},
    {lblComponent, L"STATIC", LineLabel, 0, 14, 88, 272, 17},
    {picProgress, ProgressBarClass, 0, WS_EX_CLIENTEDGE, 14, 107, 272, 14},
    {lblStatus, L"STATIC", SS_LEFT, 0, 7, 132, 286, 9, L"&Status:"},
    {txtStatus, L"EDIT", StatusStyle, WS_EX_CLIENTEDGE, 7, 142, 286, 78},
    {picHidden, L"STATIC", Label, 0, 0, 0, 0, 0},
    {fraDivider, L"STATIC", SS_ETCHEDHORZ, 0, 7, 227, 286, 1},
    {cmdAbout, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP, 0, 7, 233, 58, 14},
    {cmdContinue, L"BUTTON", BS_DEFPUSHBUTTON | WS_TABSTOP, 0, 173, 233, 58, 14},
    {cmdCancel, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP, 0, 235, 233, 58, 14},
};
constexpr DialogLayout Layout = {WideClassName, WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX, 300, 254, Items};

Id idOf(Control control) {
  switch (control) {
    case Control::Status:
      return txtStatus;
    case Control::Action:
      return lblAction;
    case Control::Component:
      return lblComponent;
    case Control::LongMessage:
      return lblLongMessage;
    case Control::Progress:
      return picProgress;
    case Control::About:
      return cmdAbout;
    case Control::Continue:
      return cmdContinue;
    case Control::Cancel:
      break;
  }
  return cmdCancel;
}

HICON programIcon(HINSTANCE instance) {
  return LoadIconA(instance, MAKEINTRESOURCEA(PROGRAM_ICON));
}

void registerMainWindow(HINSTANCE instance, WNDPROC procedure) {
  WNDCLASSA description = {};
  description.lpfnWndProc = procedure;
  description.cbWndExtra = DLGWINDOWEXTRA;
  description.hInstance = instance;
  description.hIcon = programIcon(instance);
  description.hCursor = LoadCursor(nullptr, IDC_ARROW);
  description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  description.lpszClassName = ClassName;
  RegisterClassA(&description);
}

}  // namespace

void MainWindow::create(const std::string& caption) {
  caption_ = caption;
  if (window_ != nullptr) SetWindowTextA(window_, caption.c_str());
}

HWND MainWindow::handle() {
  if (window_ == nullptr && caption_.has_value()) make();
  return window_;
}

void MainWindow::make() {
  loadCommonControls();
  registerProgressBar(instance_);
  registerMainWindow(instance_, procedure);
  std::vector<WORD> description = dialogTemplate(Layout);
  window_ =
      CreateDialogIndirectParamA(instance_, reinterpret_cast<DLGTEMPLATE*>(description.data()), nullptr, nullptr, 0);
  if (window_ == nullptr) return;
  SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  HWND image = GetDlgItem(window_, Image1);
  SendMessageA(image, STM_SETICON, reinterpret_cast<WPARAM>(programIcon(instance_)), 0);
  SetWindowTextA(image, caption_->c_str());  // its name for a reader for the blind
  showStatusScrollBar(false);
  SetWindowTextA(window_, caption_->c_str());
}

void MainWindow::destroy() {
  caption_.reset();
  if (window_ != nullptr) DestroyWindow(window_);
  window_ = nullptr;
}

void MainWindow::show() {
  ShowWindow(handle(), SW_SHOW);
  bringToFront();
  UpdateWindow(window_);
}

void MainWindow::bringToFront() {
  SetForegroundWindow(handle());
  SetFocus(control(Control::Continue));
}

void MainWindow::centre() {
  RECT frame;
  if (!GetWindowRect(handle(), &frame)) return;
  int x = (GetSystemMetrics(SM_CXSCREEN) - (frame.right - frame.left)) / 2;
  int y = (GetSystemMetrics(SM_CYSCREEN) - (frame.bottom - frame.top)) / 2;
  SetWindowPos(window_, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

HWND MainWindow::control(Control control) {
  return handle() == nullptr ? nullptr : GetDlgItem(window_, idOf(control));
}

void MainWindow::setText(Control control, const std::string& text) {
  HWND target = this->control(control);
  SetWindowTextA(target, text.c_str());
  if (control != Control::Status) return;
  SendMessageA(target, EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
  scrollToNewestLine();
}

void MainWindow::scrollToNewestLine() {
  SendMessageA(control(Control::Status), EM_SCROLLCARET, 0, 0);
}

// A scroll bar takes room from the text, whose lines then break elsewhere.
void MainWindow::showStatusScrollBar(bool shown) {
  ShowScrollBar(control(Control::Status), SB_VERT, shown);
  scrollToNewestLine();
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

int MainWindow::statusTextHeight(const std::string& text) {
  HWND hidden = handle() == nullptr ? nullptr : GetDlgItem(window_, picHidden);
  if (hidden == nullptr) return 0;
  RECT area = statusArea(control(Control::Status));
  HDC surface = GetDC(hidden);
  HGDIOBJ before = SelectObject(surface, reinterpret_cast<HFONT>(SendMessageA(hidden, WM_GETFONT, 0, 0)));
  RECT needed = {0, 0, area.right - area.left, 0};
  int height = DrawTextA(surface, text.c_str(), static_cast<int>(text.size()), &needed,
                         DT_CALCRECT | DT_EDITCONTROL | DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX);
  SelectObject(surface, before);
  ReleaseDC(hidden, surface);
  return height;
}

std::optional<WindowEvent> MainWindow::takeEvent() {
  if (events_.empty()) return std::nullopt;
  WindowEvent event = events_.front();
  events_.pop_front();
  return event;
}

// A status text that has the focus would answer Escape by closing the window.
bool MainWindow::translate(MSG& message) {
  if (window_ == nullptr) return false;
  bool ours = message.hwnd == window_ || IsChild(window_, message.hwnd);
  if (ours && message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) {
    escape();
    return true;
  }
  return IsDialogMessageA(window_, &message) != FALSE;
}

// At the end of a run there is nothing to cancel; the key closes the window then. While work runs it does nothing.
void MainWindow::escape() {
  if (IsWindowEnabled(control(Control::Cancel))) {
    queue(WindowEvent::Cancel);
  } else if (IsWindowEnabled(control(Control::Continue))) {
    queue(WindowEvent::Close);
  }
}

LRESULT CALLBACK MainWindow::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  auto* self = reinterpret_cast<MainWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (self != nullptr && self->handle(message, first, second)) return message == WM_SETCURSOR ? TRUE : 0;
  return DefDlgProcA(window, message, first, second);
}

bool MainWindow::handle(UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case WM_COMMAND:
      if (HIWORD(first) == BN_CLICKED) command(LOWORD(first));
      return true;
    case WM_CLOSE:
      queue(WindowEvent::Close);
      return true;
    case WM_SETCURSOR:
      if (!busy_ || LOWORD(second) != HTCLIENT) return false;  // the window can be moved and closed all the same
      SetCursor(LoadCursor(nullptr, IDC_WAIT));
      return true;
    case WM_NCDESTROY:
      caption_.reset();
      window_ = nullptr;
      return false;
    default:
      return false;
  }
}

// The keyboard sends the numbers of disabled buttons too.
void MainWindow::command(WORD id) {
  if (!IsWindowEnabled(GetDlgItem(window_, id))) return;
  if (id == cmdAbout) queue(WindowEvent::About);
  if (id == cmdContinue) queue(WindowEvent::Continue);
  if (id == cmdCancel) queue(WindowEvent::Cancel);
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
