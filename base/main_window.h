// The main window as the procedures use it: texts, progress, buttons and its closing. On a silent run it is never
// shown, and everything here does nothing.
#pragma once

#include <string>

#include "platform/platform.h"

namespace assistant {

class frmMain {
 public:
  explicit frmMain(platform::Platform& machine) : machine_(machine) {}

  /// Makes the window, hidden, and shows it later.
  void create(const std::string& caption);
  void show();
  bool isVisible() const { return shown_; }

  /// The line that tells what is being done; it is kept in the status text as well.
  void statusLine(const std::string& text);
  std::string statusLine() { return window().text(platform::Control::Action); }
  /// Changes the line without keeping it in the status text: for the dots that show that work goes on.
  void animateStatusLine(const std::string& text) { window().setText(platform::Control::Action, text); }
  /// Adds lines to the status text; its scroll bar appears when they no longer fit.
  void status(const std::string& text);
  void component(const std::string& text);
  void longMessage(const std::string& text);

  /// Moves the progress bar; above 100 is drawn as 100.
  void progressBar(int percent);

  void caption(platform::Control button, const std::string& text);
  std::string caption(platform::Control button) { return window().text(button); }
  /// Disabled while work runs; the cursor tells that too. Enabled again, the buttons and the window answer afresh: what
  /// was done to them meanwhile counts no more.
  void enableButtons(bool enabled);
  /// Leaves only Continue and About: of a run that has come to its end.
  void enableEndButtons();
  /// Brings the window to the front, so that the keyboard is its own again.
  void comeToFront();

  /// Lets the windows live while work runs. Closing the main window meanwhile asks whether the run is to end with the
  /// present component.
  void pump();
  /// True when that was asked for: what runs components looks at it between two of them.
  bool endWanted() const { return endWanted_; }

 private:
  void askForEnd();

  platform::MainWindow& window() const { return machine_.mainWindow(); }

  platform::Platform& machine_;
  bool shown_ = false;
  bool scrollBarShown_ = false;
  bool endWanted_ = false;
};

/// Places the window in the middle of the screen.
void CentreForm(platform::MainWindow& window);

}  // namespace assistant
