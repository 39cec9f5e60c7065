// What stands where in the main window.
#pragma once

#include "platform/main_window.h"
#include "platform/win32/dialog_template.h"

namespace win32 {

/// A second copy finds the window by this name and the caption.
inline constexpr char MainWindowClass[] = "QXInstallationAssistantMain";

/// Numbers of the window's parts. Continue and Cancel carry those that the Enter and Escape keys stand for in a dialog.
enum MainWindowPart : WORD {
  ContinueButton = IDOK,
  CancelButton = IDCANCEL,
  AboutButton = 100,
  ProgramImage,
  LongMessageLabel,
  ProgressFrame,
  ActionLabel,
  ComponentLabel,
  ProgressPart,
  StatusLabel,
  StatusText,
  StatusMeasure,  ///< never seen: texts are measured with its font
  Divider
};

extern const DialogLayout MainWindowLayout;

MainWindowPart PartOf(platform::Control control);

}  // namespace win32
