#include "platform/win32/main_window.h"

#include <algorithm>
#include <utility>

#include "platform/win32/main_window_layout.h"
#include "platform/win32/progress_bar.h"
#include "platform/win32/resource_ids.h"
#include "platform/win32/system_window.h"

namespace win32 {

using platform::Control;
using platform::WindowEvent;
using platform::WindowHandle;

namespace {

HICON ProgramIcon(HINSTANCE instance) {
  return LoadIconA(instance, MAKEINTRESOURCEA(PROGRAM_ICON));
}

void RegisterMainWindow(HINSTANCE instance, WNDPROC procedure) {
  WNDCLASSA description = {};
  description.lpfnWndProc = procedure;
  description.cbWndExtra = DLGWINDOWEXTRA;
  description.hInstance = instance;
  description.hIcon = ProgramIcon(instance);
  description.hCursor = LoadCursor(nullptr, IDC_ARROW);
  description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  description.lpszClassName = MainWindowClass;
  RegisterClassA(&description);
}

/// The area in which the status control sets its text.
RECT StatusArea(HWND status) {
  RECT area = {};
  SendMessageA(status, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&area));
  return area;
}

/// How high a text is that is set in a window's font, broken to a width.
int HeightOf(HWND window, const std::string& words, int width, UINT how) {
  WindowSurface surface(window);
  FontOfWindow font(surface.get(), window);
  RECT needed = {0, 0, width, 0};
  return DrawTextA(surface.get(), words.c_str(), static_cast<int>(words.size()), &needed,
                   how | DT_CALCRECT | DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX);
}

/// The text, or as many of its lines as a label has room for, with dots in place of the others: a label would leave
/// them out without a word.
std::string FittingLines(HWND label, const std::string& words) {
  RECT area = {};
  GetClientRect(label, &area);
  const auto fits = [&](const std::string& text) { return HeightOf(label, text, area.right, 0) <= area.bottom; };
  if (fits(words)) return words;
  std::string shown;
  for (std::size_t end = words.find("\r\n"); end != std::string::npos; end = words.find("\r\n", end + 1)) {
    const std::string more = words.substr(0, end) + "\r\n...";
    if (!fits(more)) break;
    shown = more;
  }
  return shown.empty() ? words : shown;
}

}  // namespace

void MainWindowAdapter::create(const std::string& caption) {
  caption_ = caption;
  if (window_ != nullptr) SetWindowTextA(window_, caption.c_str());
}

WindowHandle MainWindowAdapter::handle() {
  return PortWindow(window());
}

HWND MainWindowAdapter::window() {
  if (window_ == nullptr && caption_.has_value()) make();
  return window_;
}

void MainWindowAdapter::make() {
  commonControls_.emplace();
  RegisterProgressBar(instance_);
  RegisterMainWindow(instance_, procedure);
  std::vector<WORD> description = DialogTemplate(MainWindowLayout);
  window_ =
      CreateDialogIndirectParamA(instance_, reinterpret_cast<DLGTEMPLATE*>(description.data()), nullptr, nullptr, 0);
  if (window_ == nullptr) return;
  SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  HWND image = GetDlgItem(window_, ProgramImage);
  SendMessageA(image, STM_SETICON, reinterpret_cast<WPARAM>(ProgramIcon(instance_)), 0);
  SetWindowTextA(image, caption_->c_str());  // its name for a reader for the blind
  showStatusScrollBar(false);
  SetWindowTextA(window_, caption_->c_str());
}

void MainWindowAdapter::destroy() {
  caption_.reset();
  if (window_ != nullptr) DestroyWindow(window_);
  window_ = nullptr;
}

bool MainWindowAdapter::visible() {
  return window_ != nullptr && IsWindowVisible(window_);
}

void MainWindowAdapter::show() {
  ShowWindow(window(), SW_SHOW);
  bringToFront();
  UpdateWindow(window_);
}

void MainWindowAdapter::bringToFront() {
  SetForegroundWindow(window());
  SetFocus(part(Control::Continue));
}

void MainWindowAdapter::centre() {
  RECT frame;
  if (!GetWindowRect(window(), &frame)) return;
  int x = (GetSystemMetrics(SM_CXSCREEN) - (frame.right - frame.left)) / 2;
  int y = (GetSystemMetrics(SM_CYSCREEN) - (frame.bottom - frame.top)) / 2;
  SetWindowPos(window_, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

HWND MainWindowAdapter::part(Control control) {
  return window() == nullptr ? nullptr : GetDlgItem(window_, PartOf(control));
}

void MainWindowAdapter::setText(Control control, const std::string& words) {
  HWND target = part(control);
  SetWindowTextA(target, control == Control::LongMessage ? FittingLines(target, words).c_str() : words.c_str());
  if (control != Control::Status) return;
  SendMessageA(target, EM_SETSEL, words.size(), static_cast<LPARAM>(words.size()));
  scrollToNewestLine();
}

std::string MainWindowAdapter::text(Control control) {
  return TextOf(part(control));
}

void MainWindowAdapter::scrollToNewestLine() {
  SendMessageA(part(Control::Status), EM_SCROLLCARET, 0, 0);
}

// A scroll bar takes room from the text, whose lines then break elsewhere.
void MainWindowAdapter::showStatusScrollBar(bool shown) {
  ShowScrollBar(part(Control::Status), SB_VERT, shown);
  scrollToNewestLine();
}

void MainWindowAdapter::setEnabled(Control control, bool enabled) {
  HWND target = part(control);
  HWND status = part(Control::Status);
  if (!enabled && GetFocus() == target) SetFocus(status);  // a disabled control would swallow all keys
  EnableWindow(target, enabled);
  if (enabled && control == Control::Continue && GetFocus() == status) SetFocus(target);
}

void MainWindowAdapter::drawProgress(int percent, const std::string& words) {
  SetProgress(part(Control::Progress), percent, words);
}

void MainWindowAdapter::repaint() {
  if (!visible()) return;  // the system would take none for the whole desktop
  RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void MainWindowAdapter::setBusyCursor(bool busy) {
  busy_ = busy;
  SetCursor(LoadCursor(nullptr, busy ? IDC_WAIT : IDC_ARROW));
}

void MainWindowAdapter::objectToSessionEnd(bool objects) {
  sessionWindow_.object(objects);
}

void MainWindowAdapter::whenSessionEnds(std::function<void()> action) {
  sessionWindow_.whenItEnds([this, action = std::move(action)] {
    if (action) action();
    queue(WindowEvent::SessionEnds);
  });
}

bool MainWindowAdapter::addTrayIcon(const std::string& tip) {
  return trayIcon_.add(tip);
}

void MainWindowAdapter::removeTrayIcon() {
  trayIcon_.remove();
}

int MainWindowAdapter::statusAreaHeight() {
  RECT area = StatusArea(part(Control::Status));
  return area.bottom - area.top;
}

int MainWindowAdapter::statusTextHeight(const std::string& words) {
  HWND measure = window() == nullptr ? nullptr : GetDlgItem(window_, StatusMeasure);
  if (measure == nullptr) return 0;
  RECT area = StatusArea(part(Control::Status));
  return HeightOf(measure, words, area.right - area.left, DT_EDITCONTROL);
}

void MainWindowAdapter::pumpMessages() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) dispatch(message);
}

std::optional<WindowEvent> MainWindowAdapter::takeEvent() {
  if (events_.empty()) return std::nullopt;
  WindowEvent event = events_.front();
  events_.pop_front();
  return event;
}

// Without a window, nobody is there to use it.
WindowEvent MainWindowAdapter::waitForEvent() {
  while (window() != nullptr) {
    if (std::optional<WindowEvent> event = takeEvent()) return *event;
    MSG message;
    if (GetMessageA(&message, nullptr, 0, 0) <= 0) break;
    dispatch(message);
  }
  return WindowEvent::Close;
}

void MainWindowAdapter::dispatch(MSG& message) {
  if (diskWindow_.translate(message) || translate(message)) return;
  TranslateMessage(&message);
  DispatchMessageA(&message);
}

// A status text that has the focus would answer Escape by closing the window.
bool MainWindowAdapter::translate(MSG& message) {
  if (window_ == nullptr) return false;
  bool ours = message.hwnd == window_ || IsChild(window_, message.hwnd);
  if (ours && message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) {
    escape();
    return true;
  }
  return IsDialogMessageA(window_, &message) != FALSE;
}

// At the end of a run there is nothing to cancel; the key closes the window then. While work runs it does nothing.
void MainWindowAdapter::escape() {
  if (IsWindowEnabled(part(Control::Cancel))) {
    queue(WindowEvent::Cancel);
  } else if (IsWindowEnabled(part(Control::Continue))) {
    queue(WindowEvent::Close);
  }
}

LRESULT CALLBACK MainWindowAdapter::procedure(HWND addressee, UINT message, WPARAM first, LPARAM second) {
  auto* self = reinterpret_cast<MainWindowAdapter*>(GetWindowLongPtrA(addressee, GWLP_USERDATA));
  if (self != nullptr && self->answer(message, first, second)) return message == WM_SETCURSOR ? TRUE : 0;
  return DefDlgProcA(addressee, message, first, second);
}

bool MainWindowAdapter::answer(UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case WM_COMMAND:
      if (HIWORD(first) == BN_CLICKED) press(LOWORD(first));
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
void MainWindowAdapter::press(WORD button) {
  if (!IsWindowEnabled(GetDlgItem(window_, button))) return;
  if (button == AboutButton) queue(WindowEvent::About);
  if (button == ContinueButton) queue(WindowEvent::Continue);
  if (button == CancelButton) queue(WindowEvent::Cancel);
}

// Pressing the same thing again before it was looked at says nothing new.
void MainWindowAdapter::queue(WindowEvent event) {
  if (std::find(events_.begin(), events_.end(), event) == events_.end()) events_.push_back(event);
}

}  // namespace win32
