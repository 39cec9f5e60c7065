#include "platform/win32/session_window.h"

#include "platform/win32/system_library.h"

namespace win32 {

namespace {

constexpr const char* SessionWindowClass = "QXSessionWindow";

// From Windows Vista on a program without a visible window objects in vain, unless it gives a reason.
void GiveReason(HWND window, bool objects) {
  SystemLibrary user("user32.dll");
  if (objects) {
    auto* create = user.find<BOOL WINAPI(HWND, LPCWSTR)>("ShutdownBlockReasonCreate");
    if (create != nullptr) create(window, L"An installation is at work.");
  } else {
    auto* destroy = user.find<BOOL WINAPI(HWND)>("ShutdownBlockReasonDestroy");
    if (destroy != nullptr) destroy(window);
  }
}

}  // namespace

SessionWindow::~SessionWindow() {
  if (window_ != nullptr) DestroyWindow(window_);
}

void SessionWindow::object(bool objects) {
  make();
  if (window_ != nullptr && objects != objects_) GiveReason(window_, objects);
  objects_ = objects;
}

void SessionWindow::whenItEnds(std::function<void()> action) {
  make();
  action_ = std::move(action);
}

// One that only takes messages would not be asked: it has to be a window of the desktop.
void SessionWindow::make() {
  if (window_ != nullptr) return;
  WNDCLASSA description = {};
  description.lpfnWndProc = procedure;
  description.hInstance = instance_;
  description.lpszClassName = SessionWindowClass;
  RegisterClassA(&description);
  window_ = CreateWindowExA(0, SessionWindowClass, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, instance_, nullptr);
  if (window_ != nullptr) SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

LRESULT CALLBACK SessionWindow::procedure(HWND addressee, UINT message, WPARAM first, LPARAM second) {
  auto* self = reinterpret_cast<SessionWindow*>(GetWindowLongPtrA(addressee, GWLP_USERDATA));
  if (self != nullptr && message == WM_QUERYENDSESSION) return self->objects_ ? FALSE : TRUE;
  if (self == nullptr || message != WM_ENDSESSION) return DefWindowProcA(addressee, message, first, second);
  // A session that ends against the objection is like a power cut: work cannot be closed down in its middle.
  if (first != FALSE && !self->objects_ && self->action_) self->action_();
  PostMessageA(addressee, WM_NULL, 0, 0);  // whoever waits for the next message looks at what has come
  return 0;
}

}  // namespace win32
