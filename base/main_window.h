// The main window as the procedures use it: texts, progress, buttons and its closing. On a silent run it is never
// shown, and everything here does nothing.
#pragma once

#include <string>

#include "platform/platform.h"

class frmMain {
 public:
  explicit frmMain(platform::Platform& machine) : machine_(machine) {}

  /// Makes the window, hidden, and shows it later.
  void Create(const std::string& caption);
  void Show();
  bool Visible() const { return shown_; }

  /// The line that tells what is being done; it is kept in the status text as well.
  void StatusLine(const std::string& text);
  std::string StatusLine() { return machine_.mainWindow().text(platform::Control::Action); }
  /// Changes the line without keeping it in the status text: for the dots that show that work goes on.
  void AnimateStatusLine(const std::string& text) { machine_.mainWindow().setText(platform::Control::Action, text); }
  /// Adds lines to the status text; its scroll bar appears when they no longer fit.
  void Status(const std::string& text);
  void Component(const std::string& text);
  void LongMessage(const std::string& text);

  /// Moves the progress bar; above 100 is drawn as 100.
  void ProgressBar(int percent);

  void Caption(platform::Control button, const std::string& text);
  std::string Caption(platform::Control button) { return machine_.mainWindow().text(button); }
  /// Disabled while work runs; the cursor tells that too. Enabled again, the buttons and the window answer afresh: what
  /// was done to them meanwhile counts no more.
  void EnableButtons(bool enabled);
  /// Leaves only Continue and About: of a run that has come to its end.
  void EnableEndButtons();
  /// Brings the window to the front, so that the keyboard is its own again.
  void ComeToFront();

  /// Lets the windows live while work runs. Closing the main window meanwhile asks whether the run is to end with the
  /// present component.
  void Pump();
  /// True when that was asked for: what runs components looks at it between two of them.
  bool EndWanted() const { return endWanted_; }

 private:
  void AskForEnd();

  platform::Platform& machine_;
  bool shown_ = false;
  bool scrollBarShown_ = false;
  bool endWanted_ = false;
};

/// Places the window in the middle of the screen.
void CentreForm(platform::MainWindow& window);
