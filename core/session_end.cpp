#include "core/session_end.h"

namespace assistant {

void PlatformOfSession::Window::pumpMessages() {
  ForwardingMainWindow::pumpMessages();
  look_();
}

platform::WindowEvent PlatformOfSession::Window::waitForEvent() {
  const platform::WindowEvent event = ForwardingMainWindow::waitForEvent();
  look_();
  return event;
}

platform::BoxAnswer PlatformOfSession::Boxes::messageBox(const platform::MessageBoxRequest& request) {
  const platform::BoxAnswer answer = ForwardingDialogs::messageBox(request);
  look_();
  return answer;
}

std::optional<std::string> PlatformOfSession::Boxes::chooseFile(const platform::OpenFileRequest& request) {
  const std::optional<std::string> file = ForwardingDialogs::chooseFile(request);
  look_();
  return file;
}

bool PlatformOfSession::Boxes::askPassword(const platform::PasswordRequest& request,
                                           const platform::PasswordCheck& accept) {
  const bool accepted = ForwardingDialogs::askPassword(request, accept);
  look_();
  return accepted;
}

}  // namespace assistant
