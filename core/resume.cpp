#include "core/resume.h"

#include "base/error_handler.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/config_checks.h"
#include "core/discovery.h"
#include "core/display.h"
#include "core/end_of_run.h"
#include "core/initialise.h"
#include "core/install_loop.h"
#include "core/store_product.h"
#include "env/drive_mapping.h"
#include "env/reboot.h"

namespace {

bool Flag(Run& run, const char* value) {
  return IsTrue(modRegistry::ReadOrEmpty(run, ProductsKey, value));
}

void RestoreRun(Run& run) {
  modRegistry::RegWrite(run, InstallationKey, Value::Reboot, "");
  modRegistry::RegWrite(run, ProductsKey, Value::Rebooted, "");
  const std::string product = modRegistry::ReadOrEmpty(run, ProductsKey, Value::Product);
  if (!product.empty()) run.productName = product;
  run.silent = Flag(run, Value::Silent);
  run.verbose = Flag(run, Value::Verbose);
  run.log.SilentRun(run.silent);
}

void RestoreProduct(Run& run) {
  const std::string key = ProductKey(run);
  run.packageRoot = ResolvePath(run, modRegistry::ReadOrEmpty(run, key, Value::PackageRoot));
  GetProductIni(run);
  RememberIniPaths(run);
  MapDriveIfRequired(run);
  ReadForcedLists(run);
  if (modRegistry::ReadNumber(run, key, Value::LastSequence) > 0) run.forceDelete.clear();
}

}  // namespace

void StartFromReboot(Run& run) {
  RestoreRun(run);
  modAutoRun::DestroyAutoRun(run, run.silent);
  ShowRun(run);
  Guarded(run, "StartFromReboot", [&] {
    RestoreProduct(run);
    ConfigChecks(run);
  });
  run.resumePending = true;
  run.initialised = true;
  DoContinue(run);
  if (run.silent) EndInstall(run);
}
