#include "core/store_product.h"

#include <algorithm>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/ini.h"
#include "base/numbers.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/closedown.h"
#include "core/discovery.h"
#include "env/multi_disk.h"
#include "exec/captions.h"
#include "exec/outcome.h"
#include "exec/sequence.h"

namespace {

constexpr const char* Source = "modQXInstallationMain.StoreAppData";

/// Required keys are logged when they are missing.
enum class Need { Required, Optional };
enum class Form { Text, Truth };

struct RecordedKey {
  RecordKey holder;
  const char* value;
  const char* section;
  const char* key;
  const char* defaultText;
  Need need;
  Form form;
  void (*then)(Run&, const std::string&);  ///< what follows from the value; null for nothing
};

void InstallVersion(Run& run, const std::string& version) {
  modRegistry::RegWrite(run, ProductKey(run), Value::Version, version);
  run.log.Log(Source, 0, "Installing " + run.productName + " Version " + version);
}

void UseVerbose(Run& run, const std::string& verbose) {
  run.log.Log(Source, 0, "Verbose setting is " + verbose);
  run.verbose = run.verbose || IsTrue(verbose);
}

void LogSilent(Run& run, const std::string& silent) {
  run.log.Log(Source, 0, "Silent running is " + silent);
}

void LogPreviousVolume(Run& run, const std::string& volume) {
  if (!IsNotGiven(volume)) run.log.Log(Source, 0, "This is part of a multi-disk installation. ");
}

constexpr RecordedKey identity[] = {
    {RecordKey::Products, Value::Product, "Product", "Name", MissingValue, Need::Required, Form::Text, nullptr},
    {RecordKey::Product, Value::AbortOnFail, "Product", "AbortOnFail", MissingValue, Need::Required, Form::Truth,
     nullptr},
};

constexpr RecordedKey settings[] = {
    {RecordKey::Products, "Force Uninstall Reboot", "Product", "ForceUninstallReboot", "False", Need::Required,
     Form::Text, nullptr},
    {RecordKey::Products, Value::Version, "Product", "Version", MissingValue, Need::Required, Form::Text,
     InstallVersion},
    {RecordKey::Products, Value::Verbose, "Config", "Verbose", MissingValue, Need::Required, Form::Truth, UseVerbose},
    {RecordKey::Products, Value::Silent, "Config", "Silent", MissingValue, Need::Required, Form::Truth, LogSilent},
    {RecordKey::Product, Value::RequestLogon, "Config", "RequestLogonDetails", MissingValue, Need::Required,
     Form::Truth, nullptr},
    {RecordKey::Product, Value::PreviousVolumeName, "Product", "PreviousVolumeName", "", Need::Optional, Form::Text,
     LogPreviousVolume},
    {RecordKey::Product, Value::NextVolumeName, "Product", "NextVolumeName", MissingValue, Need::Optional, Form::Text,
     nullptr},
    {RecordKey::Product, "CopyOpRoot", "Product", "CopyOpRoot", MissingValue, Need::Required, Form::Text, nullptr},
    {RecordKey::Product, "CopyOpHold", "Product", "CopyOpHold", MissingValue, Need::Required, Form::Text, nullptr},
};

void Store(Run& run, const RecordedKey& row) {
  const std::string read =
      modINI::GetIniString(run, row.section, row.key, row.defaultText, run.appIniPath, row.need == Need::Optional);
  const std::string text = row.form == Form::Truth ? TrueOrFalse(IsTrue(read)) : read;
  RequireStorable(text, row.key, row.section, run.appIniPath);
  modRegistry::RegWrite(run, KeyOf(run, row.holder), row.value, text);
  if (row.then != nullptr) row.then(run, text);
}

/// Automatic logon that the first disc asked for is switched off at the end, whatever a later disc says.
bool KeepsFirstDiscs(const Run& run, const RecordedKey& row) {
  return run.furtherDisc && row.value == std::string_view(Value::RequestLogon);
}

void StoreStartSettings(Run& run) {
  if (!run.endMessage.empty()) modRegistry::RegWrite(run, ProductKey(run), "EndMessage", run.endMessage);
  if (WholeNumericValue(run.numberOfLoops).value_or(0) > 0) {
    modRegistry::RegWrite(run, ProductKey(run), Value::NumberOfLoops, run.numberOfLoops);
  }
}

std::string RequiredProductKey(Run& run, const char* key) {
  return modINI::GetIniString(run, "Product", key, MissingValue, run.appIniPath, false);
}

void StorePaths(Run& run) {
  const std::string ini = RequiredProductKey(run, "ProductIni");
  modRegistry::RegWrite(run, ProductKey(run), Value::ProductIniPath,
                        ini == MissingValue ? ini : SpecifiedProductIni(run));
  // A root that means the recorded one leaves that in place.
  const std::string root = RequiredProductKey(run, "PackageRoot");
  if (!MeansRecordedRoot(root)) modRegistry::RegWrite(run, ProductKey(run), Value::PackageRoot, root);
}

void ListSection(Run& run, std::vector<std::string>& entries, const char* section, bool keysOnly, const char* told) {
  entries.clear();
  if (!modINI::IsValidIniSection(run, section, run.appIniPath)) return;
  modINI::GetIniKeys(run, entries, section, run.appIniPath, keysOnly);
  std::string text = told;
  for (const std::string& entry : entries) text += "<br>" + entry;
  run.log.Log(Source, 0, text);
}

std::string ProductIniVersion(Run& run) {
  const std::string version = modINI::GetIniString(run, "General", "Version", MissingValue, run.productIniPath, true);
  if (version == MissingValue) {
    run.log.Log(Source, 6080, modErrorBase::GetErrorText(6080, {"Version", "General", run.productIniPath}), false,
                EntryType::Error);
  }
  return version;
}

bool UserAcceptsVersion(Run& run) {
  if (run.silent) return false;
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

void AbortRun(Run& run) {
  run.log.Log(Source, 0, "User aborted run", false, EntryType::Error);
  SetProductResult(run, false, "User aborted run");
  run.cancelled = !run.silent;
  Closedown(run);
}

/// Reads the recorded version that differs, or else the last of the two. False, with an entry, when one is not there.
bool ReadRecordedVersion(Run& run, const std::string& version, std::string& recorded) {
  for (const std::string& key : {std::string(ProductsKey), ProductKey(run)}) {
    recorded = modRegistry::ReadOrEmpty(run, key, Value::Version);
    if (IsNotGiven(recorded)) {
      run.log.Log(Source, 6082, modErrorBase::GetErrorText(6082, {"HKLM\\" + key + "\\" + Value::Version}), false,
                  EntryType::Error);
      return false;
    }
    if (recorded != version) return true;
  }
  return true;
}

void CheckVersion(Run& run) {
  const std::string version = ProductIniVersion(run);
  std::string recorded;
  if (version == MissingValue || !ReadRecordedVersion(run, version, recorded)) return;
  if (recorded == version) {
    run.log.Log(Source, 0, "Versions match " + version);
    return;
  }
  run.log.Log(Source, 0, "Versions do not match, product.ini is " + version + ", installer .ini is " + recorded);
  if (!UserAcceptsVersion(run)) AbortRun(run);
}

bool Names(const std::vector<std::string>& names, const std::string& wanted) {
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& name) { return EqualIgnoringCase(name, wanted); });
}

/// A name that stands twice, also on an earlier disc, is one component, at its first place.
void KeepFirstOfEach(Run& run) {
  const std::vector<std::string> earlier = run.furtherDisc ? RecordedComponents(run) : std::vector<std::string>();
  std::vector<std::string> unique;
  for (const std::string& action : run.actions) {
    const bool onEarlierDisc = Names(earlier, action);
    if (!onEarlierDisc && !Names(unique, action)) {
      unique.push_back(action);
      continue;
    }
    run.log.Log(Source, 0,
                "Component " + action + (onEarlierDisc ? " was named by an earlier disc and again" : " stands twice") +
                    " in section [Actions] of " + run.productIniPath +
                    "; only its first entry is used. Give each entry a name of its own.",
                false, EntryType::Warning);
  }
  run.actions = unique;
}

/// What the product ini says of its neighbours outdoes the application ini.
void StoreVolumes(Run& run) {
  for (const char* key : {Value::PreviousVolumeName, Value::NextVolumeName}) {
    const std::string volume = modCDFunctions::VolumeName(run, key, {run.appIniPath, run.productIniPath});
    const std::string recorded = modRegistry::ReadOrEmpty(run, ProductKey(run), key);
    if (volume.empty() || volume == recorded) continue;
    modRegistry::RegWrite(run, ProductKey(run), key, volume);
    if (key == Value::PreviousVolumeName && IsNotGiven(recorded)) LogPreviousVolume(run, volume);
  }
}

}  // namespace

namespace modQXInstallationMain {

bool StoreAppData(Run& run) {
  return Guarded(run, Source, [&] {
    run.window.Status(modLanguage::Text(run, modLanguage::Caption::StoringData));
    run.log.Log(Source, 0, "Writing application data to registry.");
    for (const RecordedKey& row : identity) Store(run, row);
    StoreStartSettings(run);
    for (const RecordedKey& row : settings) {
      if (!KeepsFirstDiscs(run, row)) Store(run, row);
    }
    StorePaths(run);
    ReadForcedLists(run);
    return true;
  });
}

void StoreProductData(Run& run) {
  Guarded(run, Source, [&] {
    run.log.Log(Source, 0, "Writing product data to registry.");
    CheckVersion(run);
    StoreVolumes(run);
    run.log.Log(Source, 0, "Getting list of actions for " + run.productName);
    modINI::GetIniKeys(run, run.actions, "Actions", run.productIniPath, true);
    const auto count = static_cast<std::int32_t>(run.actions.size());
    run.log.Log(Source, 0, "There are " + std::to_string(count) + " components");
    modRegistry::WriteNumber(run, ProductKey(run), "ComponentCount", count);
    KeepFirstOfEach(run);
  });
}

}  // namespace modQXInstallationMain

void ReadForcedLists(Run& run) {
  ListSection(run, run.forceUninstall, "ForceUninstall", true, "List of components to force uninstall:");
  ListSection(run, run.forceDelete, "ForceDelete", false, "List of components to delete:");
}
