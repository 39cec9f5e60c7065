#include "core/resume.h"

#include <algorithm>

#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"
#include "core/await.h"
#include "core/discovery.h"
#include "core/initialise.h"
#include "core/run_stops.h"
#include "core/store_product.h"
#include "core/switches.h"
#include "env/auto_run.h"
#include "env/multi_disk.h"
#include "env/reboot.h"
#include "env/shares.h"
#include "exec/sequence.h"

namespace assistant {
namespace {

/// What this start would have been, had it been for the pending product.
std::string PendingArguments(const Run& run) {
  const IniPaths& inis = run.product.inis;
  std::string text = Switches::ApplicationIni.text + inis.application;
  const auto add = [&](const Switch& added, const std::string& of) { text += std::string(" ") + added.text + of; };
  if (!inis.product.empty()) add(Switches::ProductIni, inis.product);
  if (run.state.silent) add(Switches::Silent, "");
  if (run.state.verbose) add(Switches::Verbose, "");
  return text;
}

/// A further restart has to start the pending product again, not the one that was asked for now.
void UseRememberedInis(Run& run, const Procedure& here) {
  const ProductRecord record = run.record();
  run.product.inis = {record.read(Value::InstallationIni), record.read(Value::ProductIni)};
  run.state.restartArguments = PendingArguments(run);
  if (!run.product.inis.application.empty()) return;
  throw here.failure("The application ini of " + run.product.name + " is not known: value " +
                     Value::InstallationIni.name + " of HKLM\\" + ProductsKey +
                     " is empty. Start its installation again.");
}

void UseRecordedDrive(Run& run) {
  if (const auto letter = modCDFunctions::RecordedDrive(run.record())) {
    modCDFunctions::UseDrive(run.services.fso, run.product, *letter);
  }
}

/// Components with a full path do without a root, and so did the run before the restart.
bool NeedsPackageRoot(const Run& run) {
  const std::vector<std::string> components = RecordedComponents(run);
  return std::any_of(components.begin(), components.end(),
                     [&](const std::string& name) { return !IsFullPath(SelectComponent(run, name).path); });
}

void RequirePackageRoot(Run& run, const Procedure& here) {
  const std::string coded = run.record().read(Value::PackageRoot);
  std::string& root = run.product.packageRoot;
  if (!NeedsPackageRoot(run)) {
    root = ResolvePath(run, coded);
    return;
  }
  const bool there = CanBeResolved(coded) && IsThereInTime(run, here, "The package root " + coded, [&] {
                       root = ResolvePath(run, coded);
                       return !root.empty() && run.services.fso.folderExists(root);
                     });
  if (there) return;
  const std::string reason = "The package root " + coded + " (PackageRoot of " + run.product.inis.application +
                             ") could not be found after the restart. Put its disc in or connect its drive, and " +
                             "start the installation again.";
  here.error(reason);
  throw RunStops{RunStops::How::CannotGoOn, reason,
                 std::string("Initialisation failed") + LineBreak + LineBreak + reason};
}

void RestoreProduct(Run& run) {
  const ProductRecord record = run.record();
  run.product.nextVolume = modCDFunctions::RecordedVolume(record, Value::NextVolumeName);
  run.product.forced = ReadForcedLists(run);
  // Once a component is installed, what the lists name may be its own.
  if (record.readNumber(Value::LastSequence) > 0) run.product.forced.remove.clear();
}

}  // namespace

bool ResumesRun(Run& run) {
  const ProductRecord record = run.record();
  if (!IsResumeRecorded(record)) return false;
  BehaveAs(run, {record.isTrue(Value::Silent), record.isTrue(Value::Verbose)});
  return true;
}

void KnowPendingProduct(Run& run, const Procedure& here) {
  run.product.name = run.record().read(Value::RunProduct);
  const std::string ini = InisAtStart(run).application;
  if (run.product.name.empty() || !run.services.fso.fileExists(ini)) return;
  const modINI::IniFile asked{run.machine.files(), run.services.log, ini};
  const RecordValue& value = Value::RunProduct;
  const std::string name = Trim(modINI::GetIniString(asked, value.ini.section, value.iniKey(), ""));
  if (EqualIgnoringCase(name, run.product.name)) return;
  UseRememberedInis(run, here);
  run.state.askedFor = name;
  if (name.empty()) return;
  here.warn("A restart of " + run.product.name + " is pending, so this run goes on with " + run.product.name +
            ". Start the installation of " + name + " (" + ini + ") again when it has ended.");
}

void StartFromReboot(Run& run) {
  const Procedure here(run.services.log, "StartFromReboot");
  UseRecordedDrive(run);
  RequireProductIni(run, here);
  RequirePackageRoot(run, here);
  RestoreProduct(run);
  // Until here, a power cut lets the next logon try the same again. The script without the record would start a run
  // from the beginning, and from whatever disc is in the drive.
  modAutoRun::DestroyAutoRun(run.services);
  TakeUpResume(here, run.record());
  run.product.shares = ValidateShares(run);
  MarkApplyingShares(run);
  CheckConfiguration(run);
}

}  // namespace assistant
