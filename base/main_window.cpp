#include "base/main_window.h"

#include <algorithm>

#include "base/identity.h"
#include "base/text.h"

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

void frmMain::Create(const std::string& caption) {
  machine_.mainWindow().create(caption);
}

void frmMain::Show() {
  machine_.mainWindow().show();
  shown_ = true;
}

void frmMain::StatusLine(const std::string& text) {
  if (!shown_) return;
  machine_.mainWindow().setText(Control::Action, text);
  Status(text);
}

void frmMain::Status(const std::string& text) {
  if (!shown_) return;
  const std::string before = machine_.mainWindow().text(Control::Status);
  const std::string all = NewestLines(before.empty() ? text : before + LineBreak + text);
  machine_.mainWindow().setText(Control::Status, all);
  const bool overflows = machine_.mainWindow().statusTextHeight(all) > machine_.mainWindow().statusAreaHeight();
  if (overflows != scrollBarShown_) {
    scrollBarShown_ = overflows;
    machine_.mainWindow().showStatusScrollBar(overflows);
  }
  machine_.mainWindow().repaint();
}

void frmMain::Component(const std::string& text) {
  if (shown_) machine_.mainWindow().setText(Control::Component, text);
}

void frmMain::LongMessage(const std::string& text) {
  if (shown_) machine_.mainWindow().setText(Control::LongMessage, text);
}

void frmMain::ProgressBar(int percent) {
  if (!shown_) return;
  const int drawn = std::clamp(percent, 0, 100);
  machine_.mainWindow().drawProgress(drawn, std::to_string(drawn) + "%");
}

void frmMain::Caption(Control button, const std::string& text) {
  machine_.mainWindow().setText(button, text);
}

void frmMain::EnableButtons(bool enabled) {
  if (!shown_) return;
  if (enabled) {
    machine_.mainWindow().pumpMessages();
    while (machine_.mainWindow().takeEvent()) {
    }
  }
  for (Control button : {Control::About, Control::Continue, Control::Cancel})
    machine_.mainWindow().setEnabled(button, enabled);
  machine_.mainWindow().setBusyCursor(!enabled);
}

void frmMain::EnableEndButtons() {
  EnableButtons(true);
  if (shown_) machine_.mainWindow().setEnabled(Control::Cancel, false);
}

void frmMain::ComeToFront() {
  if (shown_) machine_.otherWindows().focus(machine_.mainWindow().handle());
}

void frmMain::Pump() {
  machine_.mainWindow().pumpMessages();
  while (const auto event = machine_.mainWindow().takeEvent()) {
    if (*event == platform::WindowEvent::Close) AskForEnd();
  }
}

void frmMain::AskForEnd() {
  if (endWanted_) return;
  const std::string question = std::string(Title) + " is still at work." + LineBreak + LineBreak +
                               "Do you want it to end when the present component is done?";
  endWanted_ = machine_.dialogs().messageBox({.title = Title,
                                              .text = question,
                                              .icon = platform::BoxIcon::Question,
                                              .buttons = platform::BoxButtons::YesNo,
                                              .defaultAnswer = platform::BoxAnswer::No}) == platform::BoxAnswer::Yes;
  if (endWanted_) LongMessage("The run ends as soon as the present component is done.");
}

void CentreForm(platform::MainWindow& window) {
  window.centre();
}
