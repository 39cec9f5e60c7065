#include "core/initialise.h"

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/ini.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/closedown.h"
#include "core/config_checks.h"
#include "core/discovery.h"
#include "core/end_of_run.h"
#include "core/store_component.h"
#include "core/store_product.h"
#include "env/drive_mapping.h"
#include "env/login_window.h"
#include "env/multi_disk.h"
#include "env/shares.h"
#include "exec/captions.h"
#include "exec/msi_queries.h"
#include "exec/outcome.h"
#include "exec/pre_install.h"
#include "exec/sequence.h"

namespace {

namespace Caption = modLanguage::Caption;

constexpr const char* Source = "Initialise";

/// Steps of the progress bar while initialising; the bar starts anew with the first component.
namespace Progress {
constexpr int AppIniFound = 10;
constexpr int PreInstallDone = 20;
constexpr int AppDataStored = 30;
constexpr int ProductIniFound = 40;
constexpr int ProductDataStored = 50;
constexpr int ComponentsStored = 80;
constexpr int Checked = 100;
}  // namespace Progress

/// A run that cannot be prepared, told by `status` in the window.
void CannotInitialise(Run& run, const std::string& status) {
  run.window.Status(std::string("Initialisation failed") + LineBreak + LineBreak + status);
  run.busy = false;
  LeaveOrEnd(run);
}

bool FindAppIni(Run& run) {
  try {
    GetAppIni(run);
    run.window.ProgressBar(Progress::AppIniFound);
    return true;
  } catch (const Error& failure) {
    LogFailure(run, failure.source(), failure);
    SetProductResult(run, false, failure.text());
    CannotInitialise(run, "Application ini file not found");
    return false;
  }
}

bool FindPackageRoot(Run& run) {
  const std::string spec = modINI::GetIniString(run, "Product", "PackageRoot", MissingValue, run.appIniPath, false);
  run.log.Log(Source, 0, "Package Root path returned as " + spec);
  if (spec == MissingValue) {
    // The source is spelled so.
    run.log.Log("Initilise", 6080, modErrorBase::GetErrorText(6080, {"PackageRoot", "[Product]", run.appIniPath}),
                !run.silent, EntryType::Error);
    SetProductResult(run, false, "PackageRoot is missing in section [Product] of " + run.appIniPath);
    CannotInitialise(run, "PackageRoot is missing in the application ini file");
    return false;
  }
  run.packageRoot = ResolvePath(run, spec);
  run.log.Log(Source, 0, "Package Root path resolved to " + run.packageRoot);
  return true;
}

void CarryOutPreInstall(Run& run, const std::string& productIni) {
  if (run.furtherDisc) return;
  if (modQXInstallationMain::PreInstallActions(run, productIni)) {
    run.window.ProgressBar(Progress::PreInstallDone);
    return;
  }
  run.log.Log(Source, 0, "Process halted after Pre-Install Actions failed.");
  SetProductResult(run, false, "Pre-install checks failed");
  if (!run.silent) {
    run.machine.dialogs().messageBox({.title = Title,
                                      .text = "This installation cannot continue as pre-install checks failed",
                                      .icon = platform::BoxIcon::Critical});
  }
  Closedown(run);
}

bool FindProductIni(Run& run) {
  try {
    GetProductIni(run);
  } catch (const Error& failure) {
    LogFailure(run, failure.source(), failure);
    run.log.Log(Source, 0, "Product ini file " + run.productIniPath + " could not be found", false, EntryType::Error);
    SetProductResult(run, false, "Product ini file " + run.productIniPath + " could not be found");
    CannotInitialise(run, "Product ini file not found");
    return false;
  }
  run.window.ProgressBar(Progress::ProductIniFound);
  RememberIniPaths(run);
  MapDriveIfRequired(run);
  return true;
}

/// A component that could not be stored, told under its name.
void CannotStore(Run& run, const std::string& component, StoredComponent end) {
  const bool missing = end == StoredComponent::IniMissing;
  const std::string text =
      "Initilisation of " + component + " failed" +
      (missing ? " as the product ini file could not be found" : ": " + run.log.LastErrDescription());
  run.log.Log(Source, 0, text, false, EntryType::Error);
  SetProductResult(run, false, text);
  CannotInitialise(run, missing ? "Component ini file not found" : text);
}

bool StoreComponents(Run& run) {
  int index = run.furtherDisc ? static_cast<int>(HighestSequenceNumber(run)) / SequenceStep : 0;
  for (const std::string& component : run.actions) {
    const StoredComponent end = modQXInstallationMain::StoreComponentData(run, component, ++index);
    if (end == StoredComponent::Stored) continue;
    CannotStore(run, component, end);
    return false;
  }
  run.window.ProgressBar(Progress::ComponentsStored);
  return true;
}

bool StoreApplication(Run& run) {
  if (modQXInstallationMain::StoreAppData(run)) {
    run.window.ProgressBar(Progress::AppDataStored);
    return true;
  }
  const std::string text = "The application data could not be stored: " + run.log.LastErrDescription();
  SetProductResult(run, false, text);
  CannotInitialise(run, text);
  return false;
}

/// The password for the logons after restarts, where the product asks for it.
void RequestLogonDetails(Run& run) {
  if (run.furtherDisc || !frmLogin::IsWanted(run) || frmLogin::Show(run)) return;
  run.logonDeclined = true;
  EndAtRequest(run);
}

bool PrepareInstall(Run& run) {
  if (!FindAppIni(run) || !FindPackageRoot(run)) return false;
  const std::string known = KnownProductIni(run);
  CarryOutPreInstall(run, known);
  if (!StoreApplication(run)) return false;
  if (!FindProductIni(run)) return false;
  // The actions of a product ini that only the user could find run now.
  if (known.empty()) CarryOutPreInstall(run, run.productIniPath);
  modQXInstallationMain::StoreProductData(run);
  run.nextVolumeName = modCDFunctions::RecordedVolume(run, Value::NextVolumeName);
  run.window.ProgressBar(Progress::ProductDataStored);
  if (!StoreComponents(run)) return false;
  CheckConfiguration(run);
  RequestLogonDetails(run);
  return true;
}

std::string ReadyText(const Run& run) {
  const std::string blankLine = std::string(LineBreak) + LineBreak;
  if (!run.uninstall) return "Initialisation complete" + blankLine + "Click 'Continue' to proceed with installation.";
  return "This will uninstall the " + run.uninstallProduct + " product." + blankLine +
         "WARNING: if any shared components are included in this product, continuing with this uninstallation may "
         "result in other programs not functioning correctly" +
         blankLine + "Click Continue to proceed with uninstallation.";
}

/// The sequence stands at its start, and the user may begin it.
void BecomeReady(Run& run) {
  // The uninstall of a product that is not recorded leaves no record of it.
  if (!run.uninstall || modRegistry::RegKeyExists(run, ProductKey(run), "")) {
    modRegistry::RegWrite(run, ProductKey(run), Value::LastSequence, "0");
  }
  EndIfWanted(run);
  run.window.StatusLine(modLanguage::Text(run, run.uninstall ? Caption::Ready : Caption::ReadyToInstall));
  run.window.LongMessage(ReadyText(run));
}

}  // namespace

void Initialise(Run& run) {
  try {
    run.busy = true;
    run.window.EnableButtons(false);
    run.window.StatusLine(modLanguage::Text(run, Caption::Initialising));
    modRegistry::RegWrite(run, ProductsKey, Value::ProcessReturn, "");
    ValidateShares(run);
    if (!run.uninstall && !PrepareInstall(run)) return;
    if (!run.furtherDisc) BecomeReady(run);
    run.initialised = true;
  } catch (const std::exception& failure) {
    LogFailure(run, "Main.Initilise", failure, !run.silent);
    SetProductResult(run, false, failure.what());
    run.busy = false;
    return LeaveOrEnd(run);
  }
  run.busy = false;
  if (!run.furtherDisc) run.window.EnableButtons(true);
}

bool InitialiseNextDisc(Run& run) {
  run.furtherDisc = true;
  run.initialised = false;
  Initialise(run);
  return run.initialised;
}

void CheckConfiguration(Run& run) {
  run.window.StatusLine(modLanguage::Text(run, modLanguage::Caption::CheckingConfiguration));
  if (!ConfigChecks(run)) {
    run.log.Log(Source, 0, "Process halted after ConfigChecks failed.", false, EntryType::Error);
    SetProductResult(run, false, "Configuration checks failed");
    Closedown(run);
  }
  run.window.ProgressBar(Progress::Checked);
  if (run.verbose) LogInstalledMSIs(run);
}

void RememberIniPaths(Run& run) {
  modRegistry::RegWrite(run, ProductsKey, Value::InstallationIni, run.appIniPath);
  modRegistry::RegWrite(run, ProductsKey, Value::ProductIni, run.productIniPath);
}
