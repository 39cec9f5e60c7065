#include "core/store_product.h"

#include <set>

#include "base/numbers.h"
#include "base/procedure.h"
#include "base/text.h"
#include "core/discovery.h"
#include "core/display.h"
#include "core/run_stops.h"
#include "env/multi_disk.h"
#include "exec/captions.h"

namespace assistant {
namespace {

/// Both parts of the storing go by this name in the log, and so does the reading of the lists on a resumed run.
Procedure StoringProcedure(const Run& run) {
  return Procedure(run.services.log, "modQXInstallationMain.StoreAppData");
}

void InstallVersion(const Run& run, const Procedure& here, const std::string& version) {
  run.record().write(Value::Version, version);
  here.action("Installing " + run.product.name + " Version " + version);
}

void UseVerbose(const Run& run, const Procedure& here, const std::string& verbose) {
  here.action("Verbose setting is " + verbose);
  run.services.log.beVerbose(run.services.log.isVerbose() || IsTrue(verbose));
}

void LogSilent(const Run&, const Procedure& here, const std::string& silent) {
  here.action("Silent running is " + silent);
}

void LogPreviousVolume(const Run&, const Procedure& here, const std::string& volume) {
  if (!IsNotGiven(volume)) here.action("This is part of a multi-disk installation. ");
}

/// What the product was started with stands behind the first values.
void StoreStartSettings(const Run& run, const Procedure&, const std::string&) {
  const Product& product = run.product;
  if (!product.endMessage.empty()) run.record().write(Value::EndMessage, product.endMessage);
  if (WholeNumericValue(product.numberOfLoops).value_or(0) > 0) {
    run.record().write(Value::NumberOfLoops, product.numberOfLoops);
  }
}

/// What follows a value that has been stored.
struct Consequence {
  const RecordValue* of;
  void (*carryOut)(const Run&, const Procedure&, const std::string& text);
};

constexpr Consequence Consequences[] = {
    {&Value::AbortOnFail, StoreStartSettings},
    {&Value::RunVersion, InstallVersion},
    {&Value::Verbose, UseVerbose},
    {&Value::Silent, LogSilent},
    {&Value::PreviousVolumeName, LogPreviousVolume},
};

void Store(const Run& run, const Procedure& here, const RecordValue& value) {
  const IniOrigin& ini = value.ini;
  const auto missing = ini.need == Need::Required ? modINI::Missing::IsLogged : modINI::Missing::IsFine;
  const std::string read =
      modINI::GetIniString(run.applicationIni(), ini.section, value.iniKey(), ini.defaultText, missing);
  const std::string text = ini.form == Form::Truth ? TrueOrFalse(IsTrue(read)) : read;
  RequireStorable(text, value.iniKey(), ini.section, run.product.inis.application);
  run.record().write(value, text);
  for (const Consequence& consequence : Consequences) {
    if (consequence.of == &value) consequence.carryOut(run, here, text);
  }
}

/// True for a value that this disc's application ini gives.
bool IsGivenBy(const RecordValue& value, Disc disc) {
  return value.ini.section != nullptr && (value.discs == Discs::Each || disc == Disc::First);
}

std::string RequiredProductKey(const Run& run, const char* key) {
  return modINI::GetIniString(run.applicationIni(), "Product", key, MissingValue, modINI::Missing::IsLogged);
}

void StorePaths(const Run& run) {
  const std::string ini = RequiredProductKey(run, Value::ProductIni.name);
  run.record().write(Value::ProductIniPath,
                     ini == MissingValue ? ini : SpecifiedProductIni(run, run.product.inis.application));
  // A root that means the recorded one leaves that in place.
  const std::string root = RequiredProductKey(run, Value::PackageRoot.name);
  if (!MeansRecordedRoot(root)) run.record().write(Value::PackageRoot, run.services.fso.inFull(root));
}

using ListOf = std::vector<std::string> (*)(const modINI::IniFile&, const std::string&);

std::vector<std::string> ListSection(const Run& run, const Procedure& here, const char* section, ListOf list,
                                     const char* told) {
  const modINI::IniFile ini = run.applicationIni();
  if (!modINI::IsValidIniSection(ini, section)) return {};
  const std::vector<std::string> entries = list(ini, section);
  std::string text = told;
  for (const std::string& entry : entries) text += "<br>" + entry;
  here.action(text);
  return entries;
}

ForcedLists ListForced(const Run& run, const Procedure& here) {
  ForcedLists lists;
  lists.uninstall =
      ListSection(run, here, "ForceUninstall", modINI::GetIniKeys, "List of components to force uninstall:");
  lists.remove = ListSection(run, here, "ForceDelete", modINI::GetIniLines, "List of components to delete:");
  return lists;
}

std::string ProductIniVersion(const Run& run, const Procedure& here) {
  const std::string version = modINI::GetIniString(run.productIni(), "General", "Version", MissingValue);
  if (version == MissingValue) here.error(6080, {"Version", "General", run.product.inis.product});
  return version;
}

bool UserAcceptsVersion(const Run& run) {
  if (run.state.silent) return false;
  const platform::BoxAnswer answer = run.machine.dialogs().messageBox(
      {.title = "Product Version",
       .text =
           std::string("The product version does not match with the version specified in the QX Installer ini file.") +
           LineBreak + LineBreak + "Do you wish to continue with this version?",
       .icon = platform::BoxIcon::Question,
       .buttons = platform::BoxButtons::YesNo,
       .defaultAnswer = platform::BoxAnswer::Yes});
  return answer == platform::BoxAnswer::Yes;
}

/// The recorded version that differs, or else the last of the two; nothing, with an entry, when one is not there.
std::optional<std::string> RecordedVersion(const Run& run, const Procedure& here, const std::string& version) {
  const ProductRecord record = run.record();
  std::string recorded;
  for (const RecordValue* value : {&Value::RunVersion, &Value::Version}) {
    recorded = record.read(*value);
    if (IsNotGiven(recorded)) {
      here.error(6082, {"HKLM\\" + KeyOf(value->key, run.product.name) + "\\" + value->name});
      return std::nullopt;
    }
    if (recorded != version) return recorded;
  }
  return recorded;
}

void CheckVersion(const Run& run, const Procedure& here) {
  const std::string version = ProductIniVersion(run, here);
  if (version == MissingValue) return;
  const auto recorded = RecordedVersion(run, here, version);
  if (!recorded) return;
  if (*recorded == version) return here.action("Versions match " + version);
  here.action("Versions do not match, product.ini is " + version + ", installer .ini is " + *recorded);
  if (UserAcceptsVersion(run)) return;
  here.error(UserAbortedRun);
  throw RunStops{run.state.silent ? RunStops::How::Refused : RunStops::How::Declined, UserAbortedRun};
}

using Entries = std::vector<modINI::IniEntry>;

/// A name that stands twice, also on an earlier disc, is one component, at its first place.
Entries FirstOfEach(const Run& run, const Procedure& here, const Entries& entries,
                    const std::vector<std::string>& earlier) {
  std::set<std::string> onEarlierDiscs;
  for (const std::string& name : earlier) onEarlierDiscs.insert(LowerCase(name));
  std::set<std::string> seen = onEarlierDiscs;
  Entries unique;
  for (const modINI::IniEntry& entry : entries) {
    const std::string name = LowerCase(entry.key);
    if (seen.insert(name).second) {
      unique.push_back(entry);
      continue;
    }
    const bool onEarlierDisc = onEarlierDiscs.count(name) != 0;
    here.warn("Component " + entry.key + (onEarlierDisc ? " was named by an earlier disc and again" : " stands twice") +
              " in section [Actions] of " + run.product.inis.product +
              "; only its first entry is used. Give each entry a name of its own.");
  }
  return unique;
}

/// What the product ini says of its neighbours outdoes the application ini.
void StoreVolumes(const Run& run, const Procedure& here) {
  for (const RecordValue* value : {&Value::PreviousVolumeName, &Value::NextVolumeName}) {
    const std::string volume = modCDFunctions::VolumeName(run.services, *value, run.product.inis);
    const std::string recorded = run.record().read(*value);
    if (volume.empty() || volume == recorded) continue;
    run.record().write(*value, volume);
    if (value == &Value::PreviousVolumeName && IsNotGiven(recorded)) LogPreviousVolume(run, here, volume);
  }
}

Entries ListComponents(const Run& run, const Procedure& here, const std::vector<std::string>& earlier) {
  here.action("Getting list of actions for " + run.product.name);
  const Entries entries = modINI::GetIniEntries(run.productIni(), "Actions");
  const auto count = static_cast<std::int32_t>(entries.size());
  here.action("There are " + std::to_string(count) + " components");
  run.record().writeNumber(Value::ComponentCount, count);
  return FirstOfEach(run, here, entries, earlier);
}

}  // namespace

std::optional<std::string> StoreAppData(Run& run, Disc disc) {
  const Procedure here = StoringProcedure(run);
  return here.failureOf([&] {
    run.services.window.status(modLanguage::Text(modLanguage::Caption::StoringData));
    here.action("Writing application data to registry.");
    for (const RecordValue* value : RecordValues()) {
      if (IsGivenBy(*value, disc)) Store(run, here, *value);
    }
    StorePaths(run);
    const ForcedLists forced = ListForced(run, here);
    // The lists belong to the disc that the product begins with.
    if (disc == Disc::First) run.product.forced = forced;
  });
}

Entries StoreProductData(const Run& run, const std::vector<std::string>& earlier) {
  const Procedure here = StoringProcedure(run);
  Entries components;
  const auto failure = here.failureOf([&] {
    here.action("Writing product data to registry.");
    CheckVersion(run, here);
    StoreVolumes(run, here);
    components = ListComponents(run, here, earlier);
  });
  if (failure) throw RunStops{RunStops::How::CannotGoOn, "The product data could not be stored: " + *failure};
  return components;
}

ForcedLists ReadForcedLists(const Run& run) {
  return ListForced(run, StoringProcedure(run));
}

}  // namespace assistant
