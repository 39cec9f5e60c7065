// Port: the main window, dialogs, message boxes and the notification area (source: user32, comdlg32, shell32).
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace platform {

/// The controls of the main window that the program writes or reads.
enum class Control { Status, Action, Component, LongMessage, Progress, About, Continue, Cancel };

/// What a person did with the main window.
enum class WindowEvent { About, Continue, Cancel, Close };

enum class BoxIcon { None, Critical, Question, Exclamation, Information };
enum class BoxButtons { Ok, YesNo, RetryCancel };
enum class BoxAnswer { Ok, Cancel, Retry, Yes, No };

struct MessageBoxRequest {
  std::string title;
  std::string text;  ///< lines are separated by CR LF
  BoxIcon icon = BoxIcon::None;
  BoxButtons buttons = BoxButtons::Ok;
  BoxAnswer defaultAnswer = BoxAnswer::Ok;  ///< the button that Enter presses
};

struct OpenFileRequest {
  std::string title;
  std::string folder;         ///< where the dialog starts
  std::string extension;      ///< added to a name typed without one, without the point
  std::string filterName;     ///< what the list of kinds shows, such as ".ini Files"
  std::string filterPattern;  ///< such as "*.ini"
};

struct PasswordRequest {
  std::string title;
  std::string message;
  std::string passwordLabel;  ///< labels and captions mark their access keys with "&"
  std::string confirmationLabel;
  std::string okCaption;
  std::string cancelCaption;
};

/// Looks at the texts of the two boxes when OK was pressed; true closes the window. It must not raise.
using PasswordCheck = std::function<bool(const std::string& password, const std::string& confirmation)>;

struct DiskRequest {
  std::string title;
  std::string prompt;
  std::string okCaption;
  std::string cancelCaption;
};

/// What a person did with the window that asks for a disk.
enum class DiskEvent { Ok, Cancel };

/// A top-level window of this or another program; 0 is none.
struct WindowHandle {
  std::uintptr_t value = 0;
};

/// One main window, made once and shown when the run is interactive. All methods belong to the window's thread. Texts
/// of controls may be set and read before the window is shown. Nothing here fails: a machine without a display shows
/// nothing.
class Screen {
 public:
  virtual ~Screen() = default;

  /// Makes the main window, hidden, with this caption.
  virtual void createMainWindow(const std::string& caption) = 0;
  virtual WindowHandle mainWindow() = 0;
  virtual void centreMainWindow() = 0;
  virtual void showMainWindow() = 0;
  virtual bool mainWindowVisible() = 0;
  virtual void destroyMainWindow() = 0;

  virtual void setText(Control control, const std::string& text) = 0;
  virtual std::string text(Control control) = 0;
  virtual void setEnabled(Control control, bool enabled) = 0;
  /// Draws the bar filled to `percent` (0 to 100) with `text` centred in it.
  virtual void drawProgress(int percent, const std::string& text) = 0;
  virtual void repaint() = 0;

  /// Heights in pixels: of the status control's visible area, and of `text` as that control would set it.
  virtual int statusAreaHeight() = 0;
  virtual int statusTextHeight(const std::string& text) = 0;
  virtual void showStatusScrollBar(bool shown) = 0;

  /// Lets the program's windows work off what is waiting for them, and returns at once.
  virtual void pumpMessages() = 0;
  /// The oldest thing that a person did with the main window while messages were pumped and that nobody took yet.
  virtual std::optional<WindowEvent> takeEvent() = 0;
  /// Waits until a person uses the main window. What was done while pumping is delivered first.
  virtual WindowEvent waitForEvent() = 0;

  /// Shows a modal box over the main window and waits for its answer.
  virtual BoxAnswer messageBox(const MessageBoxRequest& request) = 0;
  /// Shows the system's open-file dialog; nothing when it was cancelled. The current folder stays as it was.
  virtual std::optional<std::string> chooseFile(const OpenFileRequest& request) = 0;
  /// Shows a modal window with two password boxes until `accept` is content with them. False when it was cancelled or
  /// closed. Boxes shown from within `accept` stand over this window.
  virtual bool askPassword(const PasswordRequest& request, const PasswordCheck& accept) = 0;
  /// Opens a window that asks for a disk, over the main window, which takes nothing until it is closed. Boxes stand
  /// over this window.
  virtual void openDiskWindow(const DiskRequest& request) = 0;
  /// The oldest thing that a person did with the disk window while messages were pumped and that nobody took yet.
  /// Closing it is a cancel.
  virtual std::optional<DiskEvent> takeDiskEvent() = 0;
  virtual void closeDiskWindow() = 0;
  /// Opens a file with the program that the system has for its kind; false when there is none.
  virtual bool openDocument(const std::string& path) = 0;
  virtual void setBusyCursor(bool busy) = 0;

  /// False when the machine has no notification area.
  virtual bool addTrayIcon(const std::string& tip) = 0;
  virtual void removeTrayIcon() = 0;

  /// A window's class name, cut to `capacity` - 1 characters.
  virtual std::string className(WindowHandle window, int capacity) = 0;
  virtual std::string caption(WindowHandle window) = 0;
  virtual void setCaption(WindowHandle window, const std::string& caption) = 0;
  /// The first top-level window of that class and caption.
  virtual WindowHandle findWindow(const std::string& className, const std::string& caption) = 0;
  /// Shows a window in its normal size, also out of the minimised state.
  virtual void restoreWindow(WindowHandle window) = 0;
  /// Gives a window the input focus and brings it to the front.
  virtual void focusWindow(WindowHandle window) = 0;
};

}  // namespace platform
