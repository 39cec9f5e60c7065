#include "platform/win32/other_windows.h"

#include "platform/win32/system_window.h"

namespace win32 {

using platform::WindowHandle;

namespace {

/// Room for a class name, its terminating zero included; a longer one is cut.
constexpr int ClassNameSize = 256;

}  // namespace

std::string OtherWindowsAdapter::className(WindowHandle window) {
  char name[ClassNameSize] = "";
  return std::string(name, static_cast<std::size_t>(GetClassNameA(SystemWindow(window), name, ClassNameSize)));
}

std::string OtherWindowsAdapter::caption(WindowHandle window) {
  return TextOf(SystemWindow(window));
}

void OtherWindowsAdapter::setCaption(WindowHandle window, const std::string& words) {
  SetWindowTextA(SystemWindow(window), words.c_str());
}

WindowHandle OtherWindowsAdapter::find(const std::string& wantedClass, const std::string& wantedCaption) {
  return PortWindow(FindWindowA(wantedClass.c_str(), wantedCaption.c_str()));
}

void OtherWindowsAdapter::restore(WindowHandle window) {
  ShowWindow(SystemWindow(window), SW_RESTORE);
}

void OtherWindowsAdapter::focus(WindowHandle window) {
  if (window == mainWindow_.handle()) {
    mainWindow_.bringToFront();
    return;
  }
  SetForegroundWindow(SystemWindow(window));
  SetFocus(SystemWindow(window));
}

}  // namespace win32
