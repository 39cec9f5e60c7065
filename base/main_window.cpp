#include "base/main_window.h"

#include <algorithm>

#include "base/text.h"

using platform::Control;

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
  const std::string all = before.empty() ? text : before + LineBreak + text;
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
  for (Control button : {Control::About, Control::Continue, Control::Cancel}) screen_.setEnabled(button, enabled);
}

void CentreForm(platform::Screen& screen) {
  screen.centreMainWindow();
}
