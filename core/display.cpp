#include "core/display.h"

#include <string>

#include "base/text.h"
#include "base/version.h"
#include "core/switches.h"
#include "exec/captions.h"
#include "exec/product_result.h"

namespace assistant {
namespace {

namespace Caption = modLanguage::Caption;
using platform::Control;

std::string TrayTip(const Run& run) {
  // No blank stands before the product's name.
  return run.isUninstall() ? "QX Installation Assistant is uninstalling" + run.options.uninstallProduct + "..."
                           : "QX Installation Assistant is running";
}

void ShowWindow(const Services& services) {
  frmMain& window = services.window;
  window.caption(Control::About, "&About");
  window.caption(Control::Continue, modLanguage::Text(Caption::Continue));
  window.caption(Control::Cancel, modLanguage::Text(Caption::Cancel));
  CentreForm(services.machine.mainWindow());
  window.show();
  window.progressBar(0);
  window.longMessage(modLanguage::Text(Caption::Welcome));
  window.status(modLanguage::Text(Caption::Welcome));
}

void ShowTrayIcon(const Run& run) {
  // A second copy that looks for the window would show it.
  run.machine.mainWindow().destroy();
  run.machine.mainWindow().addTrayIcon(TrayTip(run));
}

std::string ReadyText(const Run& run) {
  const std::string blankLine = std::string(LineBreak) + LineBreak;
  if (!run.isUninstall())
    return "Initialisation complete" + blankLine + "Click 'Continue' to proceed with installation.";
  return "This will uninstall the " + run.options.uninstallProduct + " product." + blankLine +
         "WARNING: if any shared components are included in this product, continuing with this uninstallation may "
         "result in other programs not functioning correctly" +
         blankLine + "Click Continue to proceed with uninstallation.";
}

std::string SuccessText(const Product& product) {
  return product.endMessage.empty() ? modLanguage::Text(Caption::AllCompleted) : product.endMessage;
}

/// The switches, with a blank line in front.
std::string SwitchLines() {
  std::string text = LineBreak;
  for (const Switch* one : Switches::All) {
    text += one->sharesLine ? ",  " : LineBreak;
    text.append(one->text).append(one->argument).append("  ").append(one->effect);
  }
  return text;
}

int FailureCaption(const Run& run) {
  if (run.isUninstall()) return run.state.aborted ? Caption::UninstallAborted : Caption::SomeFailedToUninstall;
  return run.state.aborted ? Caption::InstallAborted : Caption::SomeFailedToInstall;
}

}  // namespace

void ShowRun(const Run& run) {
  if (run.state.silent) {
    ShowTrayIcon(run);
  } else {
    ShowWindow(run.services);
  }
}

void ShowReady(const Run& run) {
  const int caption = run.isUninstall() ? Caption::Ready : Caption::ReadyToInstall;
  run.services.window.statusLine(modLanguage::Text(caption));
  run.services.window.longMessage(ReadyText(run));
}

void ShowWork(const Run& run) {
  run.services.window.enableButtons(false);
  const bool uninstall = run.isUninstall();
  run.services.window.longMessage(modLanguage::Text(uninstall ? Caption::Uninstalling : Caption::Installing) +
                                  (uninstall ? run.options.uninstallProduct : run.product.name));
}

void ShowResult(const Run& run) {
  frmMain& window = run.services.window;
  const ProductResult result = GetProductResult(run);
  if (result.succeeded) return window.longMessage(SuccessText(run.product));
  window.longMessage(modLanguage::Text(FailureCaption(run)) + LineBreak + LineBreak + result.reasons);
  // Many reasons fit only where they can be scrolled.
  const int heading = run.isUninstall() ? FailureCaption(run) : Caption::FollowingErrors;
  window.status(modLanguage::Text(heading) + LineBreak + result.reasons);
}

void OfferFinish(const Services& services) {
  services.window.caption(Control::Continue, modLanguage::Text(Caption::Finish));
  services.window.caption(Control::About, "View &log");
  services.window.comeToFront();
  services.window.enableEndButtons();
}

void ShowAboutBox(const Services& services) {
  const std::string text = std::string(Title) + " " + QXIA_VERSION_TEXT + SwitchLines() + LineBreak + LineBreak +
                           "The log of this run is " + services.log.logFilename();
  services.machine.dialogs().messageBox({.title = Title, .text = text, .icon = platform::BoxIcon::Information});
}

void ViewLog(const Services& services) {
  const std::string log = services.log.logFilename();
  if (services.machine.dialogs().openDocument(log)) return;
  services.machine.dialogs().messageBox({.title = Title,
                                         .text = "No program on this machine shows the log. It is the file " + log,
                                         .icon = platform::BoxIcon::Information});
}

}  // namespace assistant
