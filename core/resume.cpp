#include "core/resume.h"

#include "base/error_handler.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/discovery.h"
#include "core/display.h"
#include "core/end_of_run.h"
#include "core/initialise.h"
#include "core/install_loop.h"
#include "core/store_product.h"
#include "env/drive_mapping.h"
#include "env/multi_disk.h"
#include "env/reboot.h"
#include "env/shares.h"

namespace {

constexpr const char* Source = "StartFromReboot";

void RestoreRun(Run& run) {
  modRegistry::WriteOrTell(run, InstallationKey, Value::Reboot, "", Source);
  modRegistry::WriteOrTell(run, ProductsKey, Value::Rebooted, "", Source);
  const std::string product = modRegistry::ReadOrEmpty(run, ProductsKey, Value::Product);
  if (!product.empty()) run.productName = product;
}

void FindProductIni(Run& run) {
  GetProductIni(run);
  RememberIniPaths(run);
  MapDriveIfRequired(run);
}

void RestoreProduct(Run& run) {
  const std::string key = ProductKey(run);
  modCDFunctions::ReturnToDisc(run);
  run.packageRoot = ResolvePath(run, modRegistry::ReadOrEmpty(run, key, Value::PackageRoot));
  run.nextVolumeName = modCDFunctions::RecordedVolume(run, Value::NextVolumeName);
  ReadForcedLists(run);
  // Once a component is installed, what the lists name may be its own.
  if (modRegistry::ReadNumber(run, key, Value::LastSequence) > 0) run.forceDelete.clear();
}

}  // namespace

bool ResumesRun(Run& run) {
  if (run.uninstall || modRegistry::ReadOrEmpty(run, ProductsKey, Value::Rebooted) != TrueOrFalse(true)) return false;
  run.silent = IsTrue(modRegistry::ReadOrEmpty(run, ProductsKey, Value::Silent));
  run.verbose = IsTrue(modRegistry::ReadOrEmpty(run, ProductsKey, Value::Verbose));
  run.log.SilentRun(run.silent);
  return true;
}

void StartFromReboot(Run& run) {
  RestoreRun(run);
  modAutoRun::DestroyAutoRun(run, run.silent);
  ShowRun(run);
  Guarded(run, Source, [&] { RestoreProduct(run); });
  Guarded(run, Source, [&] { FindProductIni(run); });
  ValidateShares(run);
  CheckConfiguration(run);
  run.resumePending = true;
  run.initialised = true;
  DoContinue(run);
  if (run.silent) EndInstall(run);
}

void ForgetResume(Run& run) {
  if (modRegistry::ReadOrEmpty(run, ProductsKey, Value::Rebooted) != TrueOrFalse(true)) return;
  if (!EqualIgnoringCase(modRegistry::ReadOrEmpty(run, ProductsKey, Value::Product), run.productName)) return;
  modRegistry::WriteOrTell(run, ProductsKey, Value::Rebooted, "", "ForgetResume");
  modAutoRun::DestroyAutoRun(run, run.silent);
}
