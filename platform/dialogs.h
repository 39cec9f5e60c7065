// Port: message boxes, dialogs and documents that a person is shown (source: user32, comdlg32, shell32).
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace platform {

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

/// All dialogs stand over the main window while it is shown, and belong to its thread. Nothing here fails: a machine
/// that cannot show a box gives the answer that asks for nothing.
class Dialogs {
 public:
  virtual ~Dialogs() = default;

  /// Shows a modal box and waits for its answer.
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
};

}  // namespace platform
