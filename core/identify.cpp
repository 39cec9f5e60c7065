#include "core/identify.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/earlier_record.h"
#include "base/paths.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/discovery.h"
#include "core/display.h"
#include "core/exit_codes.h"
#include "core/run_stops.h"
#include "env/drive_mapping.h"
#include "env/multi_disk.h"

namespace assistant {
namespace {

std::string OfProduct(const Run& run, const char* key, modINI::Missing missing = modINI::Missing::IsFine) {
  return modINI::GetIniString(run.applicationIni(), "Product", key, "", missing);
}

/// The name becomes a registry key and a folder.
void RequireUsableName(Run& run, const Procedure& here) {
  const std::string where = "section [Product] of " + run.product.inis.application;
  if (Trim(run.product.name).empty()) {
    throw here.failure("The application ini names no product. Give it a key Name in " + where + ".");
  }
  if (IsUsableName(run.product.name)) return;
  const std::string name = std::exchange(run.product.name, std::string());
  throw here.failure("The product's name \"" + name +
                     "\" holds a character that no folder name may hold. Correct Name in " + where + ".");
}

/// A resumed run knows its name from the record.
void ReadIdentity(Run& run, const Procedure& here) {
  const bool isKnown = !run.product.name.empty();
  if (!isKnown) run.product.name = OfProduct(run, "Name", modINI::Missing::IsLogged);
  run.product.numberOfLoops = OfProduct(run, Value::NumberOfLoops.name);
  run.product.endMessage = OfProduct(run, Value::EndMessage.name);
  if (!isKnown) RequireUsableName(run, here);
}

/// True for a value of the old record that is to stand in the new one as well.
bool Outlives(const Run& run, const RecordValue& value) {
  // Where the application ini means the root that an earlier run recorded, that root outlives the earlier record.
  if (value.overWipe == OverWipe::KeptWhenMeant && !MeansRecordedRoot(OfProduct(run, value.iniKey()))) return false;
  // By name, whatever the value holds.
  const auto names = modRegistry::ValueNames(run.machine.registry(), run.record().key());
  return value.overWipe != OverWipe::Goes &&
         std::any_of(names.begin(), names.end(), [&](const auto& name) { return EqualIgnoringCase(name, value.name); });
}

}  // namespace

void LeaveDiscIfNeeded(const Run& run, const Procedure& here, const IniPaths& inis) {
  if (!modCDFunctions::StartedFromDisc(run.machine.files(), run.program)) return;
  const modCDFunctions::LocalCopy copy = modCDFunctions::IsMultiCD(run, inis);
  if (copy == modCDFunctions::LocalCopy::NotNeeded) return;
  RemoveDriveMapping(run.services, here, run.state.mappedDrive);  // the copy maps it for itself
  const bool started = copy == modCDFunctions::LocalCopy::Started;
  const int exitCode = started ? ExitCode::Succeeded : ExitCode::Failed;
  const bool otherWasAskedFor = !run.state.askedFor.empty();
  throw RunStops{.how = RunStops::How::AtOnce,
                 .exitCode = otherWasAskedFor ? ExitCode::AnotherProductWaited : exitCode};
}

void IdentifyProduct(Run& run, const Procedure& here) {
  LeaveDiscIfNeeded(run, here, InisAtStart(run));
  // It may have to wait for its media, and nobody is asked to continue.
  if (run.state.kind == RunKind::Resumed) ShowRun(run);
  run.product.inis.application = GetAppIni(run, run.product.inis.application);
  ReadIdentity(run, here);
  const LogStart start = run.state.kind == RunKind::Resumed ? LogStart::Continued : LogStart::Fresh;
  run.logFolders = SetUpLog(run.services, run.program, InstallLogPlace(run.applicationIni(), run.product.name), start);
  run.state.mappedDrive = MapDriveIfRequired(run.services, run.productIni());
}

void WipeProductRecord(const Run& run, const Procedure& here) {
  const ProductRecord record = run.record();
  KeepEarlierRecord(run.services, here, record.product());
  if (!record.exists()) return;
  std::vector<std::pair<const RecordValue*, std::string>> kept;
  for (const RecordValue* value : RecordValues()) {
    if (!Outlives(run, *value)) continue;
    const bool asTrue = value->overWipe == OverWipe::KeptAsTrue;
    if (asTrue) here.action(std::string(value->name) + " value found.");
    kept.emplace_back(value, asTrue ? TrueOrFalse(true) : record.read(*value));
  }
  modRegistry::DeleteIfThere(run.services, record.key());
  // What stays of it would count as this run's: components of the old record would be installed.
  if (record.exists()) throw here.failure(6166, {"HKLM\\" + record.key()});
  for (const auto& [value, text] : kept) {
    if (value->overWipe == OverWipe::KeptAsTrue) here.action("Recreating " + std::string(value->name) + " value.");
    if (!text.empty()) record.write(*value, text);
  }
}

}  // namespace assistant
