#include "core/resume.h"

#include "base/procedure.h"
#include "core/discovery.h"
#include "core/display.h"
#include "core/initialise.h"
#include "core/store_product.h"
#include "env/auto_run.h"
#include "env/multi_disk.h"
#include "env/reboot.h"
#include "env/shares.h"

namespace assistant {
namespace {

void RestoreProduct(Run& run) {
  const ProductRecord record = run.record();
  if (const auto letter = modCDFunctions::RecordedDrive(record)) {
    modCDFunctions::UseDrive(run.services.fso, run.product, *letter);
  }
  run.product.packageRoot = ResolvePath(run, record.read(Value::PackageRoot));
  run.product.nextVolume = modCDFunctions::RecordedVolume(record, Value::NextVolumeName);
  run.product.forced = ReadForcedLists(run);
  // Once a component is installed, what the lists name may be its own.
  if (record.readNumber(Value::LastSequence) > 0) run.product.forced.remove.clear();
}

}  // namespace

bool ResumesRun(Run& run) {
  const ProductRecord record = run.record();
  if (!IsResumeRecorded(record)) return false;
  run.options.silent = record.isTrue(Value::Silent);
  run.options.verbose = record.isTrue(Value::Verbose);
  run.services.log.beSilent(run.options.silent);
  run.services.log.beVerbose(run.options.verbose);
  return true;
}

void StartFromReboot(Run& run) {
  const Procedure here(run.services.log, "StartFromReboot");
  const std::string product = TakeUpResume(here, run.record());
  if (!product.empty()) run.product.name = product;
  modAutoRun::DestroyAutoRun(run.services);
  ShowRun(run);
  here.guard([&] { RestoreProduct(run); });
  here.guard([&] { FindProductIni(run); });
  run.product.shares = ValidateShares(run);
  CheckConfiguration(run);
}

}  // namespace assistant
