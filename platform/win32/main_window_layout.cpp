#include "platform/win32/main_window_layout.h"

#include "platform/win32/progress_bar.h"

namespace win32 {

using platform::Control;

namespace {

constexpr wchar_t WideClassName[] = L"QXInstallationAssistantMain";

constexpr DWORD Label = SS_LEFT | SS_NOPREFIX;
constexpr DWORD LineLabel = SS_LEFTNOWORDWRAP | SS_NOPREFIX;
constexpr DWORD StatusStyle = ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_TABSTOP;

// In tab order: id, class, style, extended style, x, y, width, height, text. A reader for the blind takes the label
// before the status text as its name; the other controls are named by their own texts.
constexpr DialogItem Items[] = {
    {ProgramImage, L"STATIC", SS_ICON, 0, 7, 7, 20, 20},
    {LongMessageLabel, L"STATIC", Label, 0, 38, 7, 255, 57},
    {ProgressFrame, L"BUTTON", BS_GROUPBOX, 0, 7, 66, 286, 61, L"Progress"},
    {ActionLabel, L"STATIC", LineLabel, 0, 14, 77, 272, 9},
    {ComponentLabel, L"STATIC", LineLabel, 0, 14, 88, 272, 17},
    {ProgressPart, ProgressBarClass, 0, WS_EX_CLIENTEDGE, 14, 107, 272, 14},
    {StatusLabel, L"STATIC", SS_LEFT, 0, 7, 132, 286, 9, L"&Status:"},
    {StatusText, L"EDIT", StatusStyle, WS_EX_CLIENTEDGE, 7, 142, 286, 78},
    {StatusMeasure, L"STATIC", Label, 0, 0, 0, 0, 0},
    {Divider, L"STATIC", SS_ETCHEDHORZ, 0, 7, 227, 286, 1},
    {AboutButton, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP, 0, 7, 233, 58, 14},
    {ContinueButton, L"BUTTON", BS_DEFPUSHBUTTON | WS_TABSTOP, 0, 173, 233, 58, 14},
    {CancelButton, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP, 0, 235, 233, 58, 14},
};

}  // namespace

constinit const DialogLayout MainWindowLayout = {WideClassName, WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX,
                                                 300, 254, Items};

MainWindowPart PartOf(Control control) {
  switch (control) {
    case Control::Status:
      return StatusText;
    case Control::Action:
      return ActionLabel;
    case Control::Component:
      return ComponentLabel;
    case Control::LongMessage:
      return LongMessageLabel;
    case Control::Progress:
      return ProgressPart;
    case Control::About:
      return AboutButton;
    case Control::Continue:
      return ContinueButton;
    case Control::Cancel:
      break;
  }
  return CancelButton;
}

}  // namespace win32
