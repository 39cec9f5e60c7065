#include "base/main_window.h"

#include <algorithm>

#include "base/identity.h"
#include "base/text.h"

namespace assistant {

using platform::Control;

namespace {

/// What old systems can show in one control.
constexpr std::size_t LongestStatus = 30000;

/// Drops the oldest lines of a text that has grown too long.
std::string NewestLines(const std::string& text) {
  if (text.size() <= LongestStatus) return text;
  const std::size_t lineEnd = text.find('\n', text.size() - LongestStatus);
  return text.substr(lineEnd == std::string::npos ? text.size() - LongestStatus : lineEnd + 1);
}

}  // namespace

void frmMain::create(const std::string& caption) {
  window().create(caption);
}

void frmMain::show() {
  window().show();
  shown_ = true;
}

void frmMain::statusLine(const std::string& text) {
  if (!shown_) return;
  window().setText(Control::Action, text);
  status(text);
}

void frmMain::status(const std::string& text) {
  if (!shown_) return;
  const std::string before = window().text(Control::Status);
  const std::string all = NewestLines(before.empty() ? text : before + LineBreak + text);
  window().setText(Control::Status, all);
  const bool overflows = window().statusTextHeight(all) > window().statusAreaHeight();
  if (overflows != scrollBarShown_) {
    scrollBarShown_ = overflows;
    window().showStatusScrollBar(overflows);
  }
  window().repaint();
}

void frmMain::component(const std::string& text) {
  if (shown_) window().setText(Control::Component, text);
}

void frmMain::longMessage(const std::string& text) {
  if (shown_) window().setText(Control::LongMessage, text);
}

void frmMain::progressBar(int percent) {
  if (!shown_) return;
  const int drawn = std::clamp(percent, 0, 100);
  window().drawProgress(drawn, std::to_string(drawn) + "%");
}

void frmMain::caption(Control button, const std::string& text) {
  window().setText(button, text);
}

void frmMain::enableButtons(bool enabled) {
  if (!shown_) return;
  if (enabled) {
    window().pumpMessages();
    while (window().takeEvent()) {
    }
  }
  for (Control button : {Control::About, Control::Continue, Control::Cancel}) window().setEnabled(button, enabled);
  window().setBusyCursor(!enabled);
}

void frmMain::enableEndButtons() {
  enableButtons(true);
  if (shown_) window().setEnabled(Control::Cancel, false);
}

void frmMain::comeToFront() {
  if (shown_) machine_.otherWindows().focus(window().handle());
}

void frmMain::pump() {
  window().pumpMessages();
  while (const auto event = window().takeEvent()) {
    if (*event == platform::WindowEvent::Close) askForEnd();
  }
}

void frmMain::askForEnd() {
  if (endWanted_) return;
  const std::string question = std::string(Title) + " is still at work." + LineBreak + LineBreak +
                               "Do you want it to end when the present component is done?";
  endWanted_ = machine_.dialogs().messageBox({.title = Title,
                                              .text = question,
                                              .icon = platform::BoxIcon::Question,
                                              .buttons = platform::BoxButtons::YesNo,
                                              .defaultAnswer = platform::BoxAnswer::No}) == platform::BoxAnswer::Yes;
  if (endWanted_) longMessage("The run ends as soon as the present component is done.");
}

void CentreForm(platform::MainWindow& window) {
  window.centre();
}

}  // namespace assistant
