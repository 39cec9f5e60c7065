#include "platform/win32/screen.h"

#include "platform/win32/dialogs.h"
#include "platform/win32/progress_bar.h"
#include "platform/win32/system_library.h"

#include <shellapi.h>

namespace win32 {

using platform::BoxAnswer;
using platform::Control;
using platform::WindowEvent;
using platform::WindowHandle;

namespace {

HWND systemWindow(WindowHandle window) {
  return reinterpret_cast<HWND>(window.value);
}

WindowHandle portWindow(HWND window) {
  return {reinterpret_cast<std::uintptr_t>(window)};
}

std::string windowText(HWND window) {
  int length = GetWindowTextLengthA(window);
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  text.resize(GetWindowTextA(window, text.data(), length + 1));
  return text;
}

}  // namespace

void Screen::createMainWindow(const std::string& caption) {
  window_.create(caption);
}

WindowHandle Screen::mainWindow() {
  return portWindow(window_.handle());
}

void Screen::centreMainWindow() {
  window_.centre();
}

void Screen::showMainWindow() {
  window_.show();
}

bool Screen::mainWindowVisible() {
  return window_.visible();
}

void Screen::destroyMainWindow() {
  window_.destroy();
}

void Screen::setText(Control control, const std::string& text) {
  window_.setText(control, text);
}

std::string Screen::text(Control control) {
  return windowText(window_.control(control));
}

void Screen::setEnabled(Control control, bool enabled) {
  window_.setEnabled(control, enabled);
}

void Screen::drawProgress(int percent, const std::string& text) {
  setProgress(window_.control(Control::Progress), percent, text);
}

void Screen::repaint() {
  if (!window_.visible()) return;  // the system would take none for the whole desktop
  RedrawWindow(window_.handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

int Screen::statusAreaHeight() {
  RECT area = statusArea(window_.control(Control::Status));
  return area.bottom - area.top;
}

int Screen::statusTextHeight(const std::string& text) {
  return window_.statusTextHeight(text);
}

void Screen::showStatusScrollBar(bool shown) {
  window_.showStatusScrollBar(shown);
}

void Screen::pumpMessages() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) dispatch(message);
}

std::optional<WindowEvent> Screen::takeEvent() {
  return window_.takeEvent();
}

// Without a window, nobody is there to use it.
WindowEvent Screen::waitForEvent() {
  while (window_.handle() != nullptr) {
    if (std::optional<WindowEvent> event = window_.takeEvent()) return *event;
    MSG message;
    if (GetMessageA(&message, nullptr, 0, 0) <= 0) break;
    dispatch(message);
  }
  return WindowEvent::Close;
}

void Screen::dispatch(MSG& message) {
  if (diskDialog_.translate(message) || window_.translate(message)) return;
  TranslateMessage(&message);
  DispatchMessageA(&message);
}

HWND Screen::dialogOwner() {
  if (passwordDialog_.handle() != nullptr) return passwordDialog_.handle();
  if (diskDialog_.handle() != nullptr) return diskDialog_.handle();
  return mainWindowVisible() ? window_.handle() : nullptr;
}

BoxAnswer Screen::messageBox(const platform::MessageBoxRequest& request) {
  return showMessageBox(dialogOwner(), request);
}

std::optional<std::string> Screen::chooseFile(const platform::OpenFileRequest& request) {
  return win32::chooseFile(dialogOwner(), request);
}

bool Screen::askPassword(const platform::PasswordRequest& request, const platform::PasswordCheck& accept) {
  return passwordDialog_.show(dialogOwner(), request, accept);
}

void Screen::openDiskWindow(const platform::DiskRequest& request) {
  diskDialog_.open(dialogOwner(), request);
}

std::optional<platform::DiskEvent> Screen::takeDiskEvent() {
  return diskDialog_.takeEvent();
}

void Screen::closeDiskWindow() {
  diskDialog_.close();
}

// NT 3.51 has the function as well, but not every early system has the library.
bool Screen::openDocument(const std::string& path) {
  constexpr INT_PTR LastError = 32;
  static_assert(sizeof(HINSTANCE) == sizeof(INT_PTR));
  SystemLibrary shell("shell32.dll");
  auto* execute = shell.find<decltype(ShellExecuteA)>("ShellExecuteA");
  if (execute == nullptr) return false;
  HINSTANCE result = execute(dialogOwner(), "open", path.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<INT_PTR>(result) > LastError;
}

void Screen::setBusyCursor(bool busy) {
  window_.setBusyCursor(busy);
}

bool Screen::addTrayIcon(const std::string& tip) {
  return tray_.add(tip);
}

void Screen::removeTrayIcon() {
  tray_.remove();
}

std::string Screen::className(WindowHandle window, int capacity) {
  if (capacity <= 0) return {};
  std::string name(static_cast<std::size_t>(capacity), '\0');
  name.resize(GetClassNameA(systemWindow(window), name.data(), capacity));
  return name;
}

std::string Screen::caption(WindowHandle window) {
  return windowText(systemWindow(window));
}

void Screen::setCaption(WindowHandle window, const std::string& caption) {
  SetWindowTextA(systemWindow(window), caption.c_str());
}

WindowHandle Screen::findWindow(const std::string& className, const std::string& caption) {
  return portWindow(FindWindowA(className.c_str(), caption.c_str()));
}

void Screen::restoreWindow(WindowHandle window) {
  ShowWindow(systemWindow(window), SW_RESTORE);
}

void Screen::focusWindow(WindowHandle window) {
  if (systemWindow(window) == window_.handle()) {
    window_.bringToFront();
    return;
  }
  SetForegroundWindow(systemWindow(window));
  SetFocus(systemWindow(window));
}

}  // namespace win32
