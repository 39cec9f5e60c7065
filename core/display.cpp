#include "core/display.h"

#include <string>

#include "base/text.h"
#include "core/closedown.h"
#include "core/end_of_run.h"
#include "core/install_loop.h"
#include "exec/captions.h"

namespace {

namespace Caption = modLanguage::Caption;
using platform::Control;

std::string TrayTip(const Run& run) {
  // No blank stands before the product's name.
  return run.uninstall ? "QX Installation Assistant is uninstalling" + run.uninstallProduct + "..."
                       : "QX Installation Assistant is running";
}

void ShowWindow(Run& run) {
  run.window.Caption(Control::About, "&About");
  run.window.Caption(Control::Continue, modLanguage::Text(run, Caption::Continue));
  run.window.Caption(Control::Cancel, modLanguage::Text(run, Caption::Cancel));
  CentreForm(run.machine.mainWindow());
  run.window.Show();
  run.window.ProgressBar(0);
  run.window.LongMessage(modLanguage::Text(run, Caption::Welcome));
  run.window.Status(modLanguage::Text(run, Caption::Welcome));
}

void ShowTrayIcon(Run& run) {
  // A second copy that looks for the window would show it.
  run.machine.mainWindow().destroy();
  run.machine.mainWindow().addTrayIcon(TrayTip(run));
}

void ShowAboutBox(Run& run) {
  constexpr const char* lines[] = {
      Title,
      "",
      "/s  silent run",
      "/v  more detail in the log",
      "/x product  uninstall the product",
      "/is=path  application ini,  /isr  the one of the last run",
      "/ia=path  product ini,  /iar  the one of the last run",
      "",
  };
  std::string text;
  for (const char* line : lines) text += std::string(line) + LineBreak;
  text += "The log of this run is " + run.log.LogFilename();
  run.machine.dialogs().messageBox({.title = Title, .text = text, .icon = platform::BoxIcon::Information});
}

void ViewLog(Run& run) {
  const std::string log = run.log.LogFilename();
  if (run.machine.dialogs().openDocument(log)) return;
  run.machine.dialogs().messageBox({.title = Title,
                                    .text = "No program on this machine shows the log. It is the file " + log,
                                    .icon = platform::BoxIcon::Information});
}

/// Leaving the window before the result was shown cancels the run.
void LeaveWindow(Run& run) {
  if (!ShowsResult(run)) run.uninstall ? EndUntouched(run) : EndAtRequest(run);
  Closedown(run);
}

}  // namespace

void ShowRun(Run& run) {
  if (run.silent) {
    ShowTrayIcon(run);
  } else {
    ShowWindow(run);
  }
}

void ShowWork(Run& run) {
  run.window.EnableButtons(false);
  const bool named = run.uninstallProductFound;
  run.window.LongMessage(modLanguage::Text(run, named ? Caption::Uninstalling : Caption::Installing) +
                         (named ? run.uninstallProduct : run.productName));
}

void ServeWindow(Run& run) {
  for (;;) {
    switch (run.machine.mainWindow().waitForEvent()) {
      case platform::WindowEvent::About:
        ShowsResult(run) ? ViewLog(run) : ShowAboutBox(run);
        break;
      case platform::WindowEvent::Continue:
        DoContinue(run);
        break;
      default:
        LeaveWindow(run);
    }
  }
}
