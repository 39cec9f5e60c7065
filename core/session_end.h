// The end of the session: it is final, wherever the run stands.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "platform/forwarding.h"

namespace assistant {

/// The machine for one run, with a look behind everything that lets messages in: what the end of the session has closed
/// down must not go on behind it. The look may raise RunStops, which no window's procedure could.
class PlatformOfSession : public platform::ForwardingPlatform {
 public:
  using Look = std::function<void()>;

  explicit PlatformOfSession(platform::Platform& inner)
      : ForwardingPlatform(inner), window_(inner.mainWindow(), look_), dialogs_(inner.dialogs(), look_) {}

  void lookBehindMessages(Look look) { look_ = std::move(look); }

  platform::MainWindow& mainWindow() override { return window_; }
  platform::Dialogs& dialogs() override { return dialogs_; }

 private:
  class Window : public platform::ForwardingMainWindow {
   public:
    Window(platform::MainWindow& inner, const Look& look) : ForwardingMainWindow(inner), look_(look) {}
    void pumpMessages() override;
    platform::WindowEvent waitForEvent() override;

   private:
    const Look& look_;
  };

  class Boxes : public platform::ForwardingDialogs {
   public:
    Boxes(platform::Dialogs& inner, const Look& look) : ForwardingDialogs(inner), look_(look) {}
    platform::BoxAnswer messageBox(const platform::MessageBoxRequest& request) override;
    std::optional<std::string> chooseFile(const platform::OpenFileRequest& request) override;
    bool askPassword(const platform::PasswordRequest& request, const platform::PasswordCheck& accept) override;

   private:
    const Look& look_;
  };

  Look look_ = [] {};
  Window window_;
  Boxes dialogs_;
};

}  // namespace assistant
