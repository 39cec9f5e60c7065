#include "core/initialise.h"

#include "base/procedure.h"
#include "base/text.h"
#include "core/config_checks.h"
#include "core/discovery.h"
#include "core/display.h"
#include "core/end_wanted.h"
#include "core/identify.h"
#include "core/run_stops.h"
#include "core/store_component.h"
#include "core/store_product.h"
#include "env/drive_mapping.h"
#include "env/login_window.h"
#include "env/multi_disk.h"
#include "env/shares.h"
#include "exec/captions.h"
#include "exec/msi_queries.h"
#include "exec/pre_install.h"
#include "exec/product_result.h"
#include "exec/sequence.h"

namespace assistant {
namespace {

namespace Caption = modLanguage::Caption;

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

/// A run that cannot be prepared: the product's reason, and what the window tells of it.
RunStops CannotInitialise(const std::string& reason, const std::string& status) {
  return {RunStops::How::CannotGoOn, reason, std::string("Initialisation failed") + LineBreak + LineBreak + status};
}

void FindAppIni(Run& run) {
  try {
    run.product.inis.application = GetAppIni(run, run.product.inis.application);
  } catch (const Error& failure) {
    // Told under the name of the search; the run stops with it.
    run.services.log.log("", failure);
    throw CannotInitialise(failure.text(), "Application ini file not found");
  }
  run.services.window.progressBar(Progress::AppIniFound);
}

void FindPackageRoot(Run& run, const Procedure& here) {
  const std::string coded = modINI::GetIniString(run.applicationIni(), "Product", Value::PackageRoot.name, MissingValue,
                                                 modINI::Missing::IsLogged);
  here.action("Package Root path returned as " + coded);
  if (coded == MissingValue) {
    // Logs have always spelt the source so.
    const Procedure missing(run.services.log, "Initilise");
    const std::string& ini = run.product.inis.application;
    missing.error(6080, {Value::PackageRoot.name, "[Product]", ini}, Shown::UnlessSilent);
    throw CannotInitialise("PackageRoot is missing in section [Product] of " + ini,
                           "PackageRoot is missing in the application ini file");
  }
  run.product.packageRoot = ResolvePath(run, coded);
  here.action("Package Root path resolved to " + run.product.packageRoot);
}

void RefusePreInstall(Run& run, const Procedure& here, const std::string& reason) {
  if (!reason.empty()) SetProductResult(run, false, reason);
  here.action("Process halted after Pre-Install Actions failed.");
  if (!run.state.silent) {
    run.machine.dialogs().messageBox({.title = Title,
                                      .text = "This installation cannot continue as pre-install checks failed",
                                      .icon = platform::BoxIcon::Critical});
  }
  throw RunStops{RunStops::How::Refused, "Pre-install checks failed"};
}

void CarryOutPreInstall(Run& run, const Procedure& here, const std::string& productIni) {
  BeginWork(run);
  const PreInstallEnd end = PreInstallActions(run, productIni);
  EndIfWanted(run.services);
  if (!end.passed) RefusePreInstall(run, here, end.reason);
  run.services.window.progressBar(Progress::PreInstallDone);
}

void StoreApplication(Run& run, Disc disc) {
  if (const auto failure = StoreAppData(run, disc)) {
    const std::string text = "The application data could not be stored: " + *failure;
    throw CannotInitialise(text, text);
  }
  run.services.window.progressBar(Progress::AppDataStored);
}

void FindProductIni(Run& run) {
  GetProductIni(run);
  run.record().write(Value::InstallationIni, run.product.inis.application);
  run.record().write(Value::ProductIni, run.product.inis.product);
  const std::string serverType = modINI::GetIniString(run.productIni(), "Product", "ServerType", "");
  if (!serverType.empty()) run.record().write(Value::ProductServerType, serverType);
  if (run.state.mappedDrive.empty()) run.state.mappedDrive = MapDriveIfRequired(run.services, run.productIni());
}

/// A component that could not be stored, told under its name.
RunStops CannotStore(const Procedure& here, const std::string& component, const StoredComponent& stored) {
  const bool missing = stored.end == StoredComponent::End::IniMissing;
  const std::string text = "Initilisation of " + component + " failed" +
                           (missing ? " as the product ini file could not be found" : ": " + stored.reason);
  here.error(text);
  return CannotInitialise(text, missing ? "Component ini file not found" : text);
}

/// The components are numbered on from this index.
void StoreComponents(Run& run, const Procedure& here, const std::vector<modINI::IniEntry>& components, int index) {
  // What the components name may lie on a share, and the product ini says what machine this is.
  MarkApplyingShares(run);
  for (const modINI::IniEntry& component : components) {
    const StoredComponent stored = StoreComponentData(run, component, ++index);
    if (stored.end == StoredComponent::End::BadName) {
      SetProductResult(run, false, stored.reason);
      continue;
    }
    if (stored.end != StoredComponent::End::Stored) throw CannotStore(here, component.key, stored);
  }
  run.services.window.progressBar(Progress::ComponentsStored);
}

/// The entries of this disc's components, and the disc behind it. `earlier` are the components of the discs before it.
std::vector<modINI::IniEntry> StoreProduct(Run& run, const std::vector<std::string>& earlier) {
  const std::vector<modINI::IniEntry> components = StoreProductData(run, earlier);
  run.product.nextVolume = modCDFunctions::RecordedVolume(run.record(), Value::NextVolumeName);
  run.services.window.progressBar(Progress::ProductDataStored);
  return components;
}

/// The password for the logons after restarts, where the product asks for it.
void RequestLogonDetails(Run& run) {
  if (!frmLogin::IsWanted(run.record()) || frmLogin::Show(run.services, run.record())) return;
  throw RunStops{RunStops::How::Cancelled, UserAbortedRun};
}

/// The user may begin.
void BecomeReady(const Run& run) {
  EndIfWanted(run.services);
  ShowReady(run);
}

void PrepareUninstall(Run& run, const Procedure&) {
  BecomeReady(run);
}

void PrepareFirstDisc(Run& run, const Procedure& here) {
  FindAppIni(run);
  FindPackageRoot(run, here);
  const std::string known = KnownProductIni(run);
  CarryOutPreInstall(run, here, known);
  StoreApplication(run, Disc::First);
  RequireProductIni(run, here);
  // Of a product ini that only the user could find, it is not known before whether the product lies on several discs.
  if (known.empty()) LeaveDiscIfNeeded(run, here, run.product.inis);
  // Its actions run now.
  if (known.empty()) CarryOutPreInstall(run, here, run.product.inis.product);
  StoreComponents(run, here, StoreProduct(run, {}), 0);
  CheckConfiguration(run);
  // Components that are not recorded whole would go to other places, and could not be taken off again.
  RequireRecords(run, here);
  RequestLogonDetails(run);
  run.record().write(Value::LastSequence, "0");
  BecomeReady(run);
}

void PrepareNextDisc(Run& run, const Procedure& here) {
  // The machine's type is asked for again: this disc may name another.
  run.facts.serverType.clear();
  // What was refused before has failed the product already.
  const bool refusedBefore = run.services.refusals.any();
  FindAppIni(run);
  FindPackageRoot(run, here);
  StoreApplication(run, Disc::Further);
  RequireProductIni(run, here);
  const std::vector<modINI::IniEntry> components = StoreProduct(run, RecordedComponents(run));
  StoreComponents(run, here, components, static_cast<int>(HighestSequenceNumber(run)) / SequenceStep);
  CheckConfiguration(run);
  if (!refusedBefore) RequireRecords(run, here);
}

using Steps = void (*)(Run&, const Procedure&);

/// What all preparations have around their own steps.
void Prepare(Run& run, Steps steps) {
  // Plain rows bear the one name, failures the other: logs have always spelt them so.
  const Procedure here(run.services.log, "Initialise", "Main.Initilise");
  const auto failure = here.failureOf(
      [&] {
        run.services.window.enableButtons(false);
        run.services.window.statusLine(modLanguage::Text(Caption::Initialising));
        run.product.shares = ValidateShares(run);
        steps(run, here);
      },
      Shown::UnlessSilent);
  if (failure) throw RunStops{RunStops::How::CannotGoOn, *failure};
}

}  // namespace

void Initialise(Run& run) {
  Prepare(run, run.isUninstall() ? PrepareUninstall : PrepareFirstDisc);
  run.services.window.enableButtons(true);
}

void InitialiseNextDisc(Run& run) {
  Prepare(run, PrepareNextDisc);
}

void RequireProductIni(Run& run, const Procedure& here) {
  try {
    FindProductIni(run);
  } catch (const Error& failure) {
    // Told under the name of the search, and as what it means to the run, which stops with it.
    run.services.log.log("", failure);
    const std::string text = "Product ini file " + run.product.inis.product + " could not be found";
    here.error(text);
    throw CannotInitialise(text, "Product ini file not found");
  }
  run.services.window.progressBar(Progress::ProductIniFound);
}

void CheckConfiguration(Run& run) {
  run.services.window.statusLine(modLanguage::Text(Caption::CheckingConfiguration));
  ConfigChecks(run);
  run.services.window.progressBar(Progress::Checked);
  if (run.services.log.isVerbose()) LogInstalledMSIs(run.services);
}

}  // namespace assistant
