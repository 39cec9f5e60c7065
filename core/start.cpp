#include "core/start.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/error_handler.h"
#include "base/ini.h"
#include "base/log_setup.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/command_line.h"
#include "core/discovery.h"
#include "core/display.h"
#include "core/end_of_run.h"
#include "core/initialise.h"
#include "core/install_loop.h"
#include "core/resume.h"
#include "env/drive_mapping.h"
#include "env/local_copy.h"
#include "env/multi_disk.h"
#include "env/reboot.h"
#include "exec/captions.h"
#include "exec/outcome.h"

namespace {

constexpr const char* Source = "Main";
constexpr int AnotherCopyRuns = 3;

bool LocalInstanceIsRecorded(Run& run) {
  return modRegistry::RegKeyExists(run, ProductsKey, Value::QXIALocalInstall);
}

void ReadCommandLine(Run& run) {
  run.commandLine = ArgumentText(run.machine.machine().commandLine(), run.machine.machine().programPath());
  if (!run.commandLine.empty()) GetCommandLine(run, run.commandLine);
}

std::string ProductKeyOfAppIni(Run& run, const char* key, bool silent) {
  return modINI::GetIniString(run, "Product", key, "", run.appIniPath, silent);
}

/// The name becomes a registry key and a folder.
void RequireUsableName(Run& run) {
  const std::string where = "section [Product] of " + run.appIniPath;
  if (run.productDisplayName.empty()) {
    throw Error(GeneralError, "The application ini names no product. Give it a key Name in " + where + ".", Source);
  }
  if (IsUsableName(run.productName)) return;
  const std::string name = std::exchange(run.productName, std::string());
  throw Error(GeneralError,
              "The product's name \"" + name + "\" holds a character that no folder name may hold. Correct Name in " +
                  where + ".",
              Source);
}

void ReadIdentity(Run& run) {
  run.productName = ProductKeyOfAppIni(run, "Name", false);
  run.numberOfLoops = Trim(ProductKeyOfAppIni(run, "NumberOfLoops", true));
  run.endMessage = Trim(ProductKeyOfAppIni(run, "EndMessage", true));
  run.productDisplayName = Trim(ProductKeyOfAppIni(run, "Name", true));
  RequireUsableName(run);
}

void IdentifyProduct(Run& run) {
  if (modCDFunctions::StartedFromDisc(run)) modCDFunctions::isMultiCD(run, InisAtStart(run));
  GetAppIni(run);
  ReadIdentity(run);
  SetUpLog(run);
  MapDriveIfRequired(run);
}

bool HoldsSkipPreInstall(Run& run, const std::string& key) {
  const std::vector<std::string> names = modRegistry::ValueNames(run, key);
  return std::any_of(names.begin(), names.end(),
                     [](const std::string& name) { return EqualIgnoringCase(name, Value::SkipPreInstall); });
}

/// Where the application ini means the root that an earlier run recorded, that root outlives the earlier record.
std::string RootToKeep(Run& run, const std::string& key) {
  if (!MeansRecordedRoot(ProductKeyOfAppIni(run, Value::PackageRoot, true))) return std::string();
  return modRegistry::RegRead(run, key, Value::PackageRoot);
}

/// Wipes the record of an earlier install of the product, but for the request to skip its pre-install actions.
void WipeProductRecord(Run& run) {
  const std::string key = ProductKey(run);
  if (!modRegistry::RegKeyExists(run, key, "")) return;
  const bool skip = HoldsSkipPreInstall(run, key);
  const std::string root = RootToKeep(run, key);
  if (skip) run.log.Log(Source, 0, "SkipPreInstall value found.");
  modRegistry::DeleteIfThere(run, key);
  if (!root.empty()) modRegistry::RegWrite(run, key, Value::PackageRoot, root);
  if (!skip) return;
  run.log.Log(Source, 0, "Recreating SkipPreInstall value.");
  modRegistry::RegWrite(run, key, Value::SkipPreInstall, TrueOrFalse(true));
}

/// From here an interactive run is driven by its window.
void StartSequence(Run& run) {
  ShowRun(run);
  Initialise(run);
  if (!run.silent) return;
  DoContinue(run);
  EndInstall(run);
}

/// A power cut on the way into or out of a restart can leave the script behind: it would start a run at every logon.
void StartFreshInstall(Run& run) {
  ForgetAutoRun(run);
  WipeProductRecord(run);
  SetProductResult(run, true, "");
  run.resumePending = false;
  if (LocalInstanceIsRecorded(run)) run.log.Log(Source, 0, "Starting Local instance of QXIA");
  StartSequence(run);
}

void Start(Run& run) {
  run.window.Create(Title);
  PreventDuplicate(run);
  run.log.Start();
  // The mark alone may be that of a local copy which ended badly; this program may be the one on the medium.
  run.localInstance =
      LocalInstanceIsRecorded(run) && EqualIgnoringCase(run.machine.machine().programPath(), LocalProgram(run));
  ReadCommandLine(run);
  run.rebooted = ResumesRun(run);
  run.component = {};
  if (run.uninstall) {
    run.endMessage = "QX Installation Assistant has successfully un-installed the product " + run.uninstallProduct;
  } else {
    IdentifyProduct(run);
  }
  modLanguage::CreateEDictionary(run);
  if (run.uninstall) {
    SetProductResult(run, true, "");
    StartSequence(run);
  } else if (run.rebooted) {
    run.log.Log(Source, 0, "System has been re-booted by the application.");
    StartFromReboot(run);
  } else {
    StartFreshInstall(run);
  }
}

void BringOtherCopyForward(Run& run) {
  platform::OtherWindows& windows = run.machine.otherWindows();
  const platform::WindowHandle own = run.machine.mainWindow().handle();
  const std::string caption = windows.caption(own);
  // Without its caption, this copy's own window is not the one that is found.
  windows.setCaption(own, "");
  const platform::WindowHandle other = windows.find(WindowClass(run, own), caption);
  windows.setCaption(own, caption);
  if (other == platform::WindowHandle{}) return;
  windows.restore(other);
  windows.focus(other);
}

}  // namespace

void Main(Run& run) {
  try {
    Start(run);
  } catch (const std::exception& failure) {
    LogFailure(run, Source, failure, !run.silent);
    SetProductResult(run, false, failure.what());
    EndInstall(run);
  }
}

void PreventDuplicate(Run& run) {
  try {
    if (LocalInstanceIsRecorded(run)) return;
    if (!run.machine.machine().anotherCopyRuns()) return;
    BringOtherCopyForward(run);
  } catch (const Error& failure) {
    run.machine.dialogs().messageBox({.title = "Prevent Duplicate",
                                      .text = "Error: " + std::to_string(failure.number()) + LineBreak + LineBreak +
                                              "Description: " + failure.text(),
                                      .icon = platform::BoxIcon::Exclamation});
    return;
  }
  throw ProgramEnd{AnotherCopyRuns};
}

std::string WindowClass(Run& run, platform::WindowHandle window) {
  return run.machine.otherWindows().className(window);
}
