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
  screen_.createMainWindow(caption);
}

void frmMain::Show() {
  screen_.showMainWindow();
  shown_ = true;
}

void frmMain::StatusLine(const std::string& text) {
  if (!shown_) return;
  screen_.setText(Control::Action, text);
  Status(text);
}

void frmMain::Status(const std::string& text) {
  if (!shown_) return;
  const std::string before = screen_.text(Control::Status);
  const std::string all = NewestLines(before.empty() ? text : before + LineBreak + text);
  screen_.setText(Control::Status, all);
  const bool overflows = screen_.statusTextHeight(all) > screen_.statusAreaHeight();
  if (overflows != scrollBarShown_) {
    scrollBarShown_ = overflows;
    screen_.showStatusScrollBar(overflows);
  }
  screen_.repaint();
}

void frmMain::Component(const std::string& text) {
  if (shown_) screen_.setText(Control::Component, text);
}

void frmMain::LongMessage(const std::string& text) {
  if (shown_) screen_.setText(Control::LongMessage, text);
}

void frmMain::ProgressBar(int percent) {
  if (!shown_) return;
  const int drawn = std::clamp(percent, 0, 100);
  screen_.drawProgress(drawn, std::to_string(drawn) + "%");
}

void frmMain::Caption(Control button, const std::string& text) {
  screen_.setText(button, text);
}

void frmMain::EnableButtons(bool enabled) {
  if (!shown_) return;
  if (enabled) {
    screen_.pumpMessages();
    while (screen_.takeEvent()) {
    }
  }
  for (Control button : {Control::About, Control::Continue, Control::Cancel}) screen_.setEnabled(button, enabled);
  screen_.setBusyCursor(!enabled);
}

void frmMain::EnableEndButtons() {
  EnableButtons(true);
  if (shown_) screen_.setEnabled(Control::Cancel, false);
}

void frmMain::ComeToFront() {
  if (shown_) screen_.focusWindow(screen_.mainWindow());
}

void frmMain::Pump() {
  screen_.pumpMessages();
  while (const auto event = screen_.takeEvent()) {
    if (*event == platform::WindowEvent::Close) AskForEnd();
  }
}

void frmMain::AskForEnd() {
  if (endWanted_) return;
  const std::string question = std::string(Title) + " is still at work." + LineBreak + LineBreak +
                               "Do you want it to end when the present component is done?";
  endWanted_ = screen_.messageBox({.title = Title,
                                   .text = question,
                                   .icon = platform::BoxIcon::Question,
                                   .buttons = platform::BoxButtons::YesNo,
                                   .defaultAnswer = platform::BoxAnswer::No}) == platform::BoxAnswer::Yes;
  if (endWanted_) LongMessage("The run ends as soon as the present component is done.");
}

void CentreForm(platform::Screen& screen) {
  screen.centreMainWindow();
}
