// Layout of the records that a run keeps in the registry, all under HKEY_LOCAL_MACHINE: run values under the
// installation key, one key per product under the products key, one key per component under the product's.
#pragma once

#include <string>

#include "base/run.h"

/// The product's key; the products key itself for an empty name.
std::string ProductKey(const std::string& product);
/// Key of the product that this run installs or removes.
std::string ProductKey(const Run& run);

/// The three keys that a run keeps its values under.
enum class RecordKey { Installation, Products, Product };
std::string KeyOf(const Run& run, RecordKey key);

std::string ComponentKey(const std::string& product, const std::string& component);

/// Sequence numbers are a component's place in its product times this; a resumed run relies on it.
inline constexpr int SequenceStep = 100;

/// What a value holds when its required ini key was missing.
inline constexpr const char* MissingValue = "<ERROR>";
/// What a value holds that has nothing to say.
inline constexpr const char* NotApplicable = "N/A";

/// "N/A" in any case, empty, or the mark of a key that was missing: the three ways of not giving a value.
bool IsNotGiven(const std::string& text);

/// Raises an error that names the ini key when its text is too long to be read back from a record.
void RequireStorable(const std::string& text, const std::string& key, const std::string& section,
                     const std::string& iniFile);

/// Names of the values that more than one procedure reads or writes.
namespace Value {
inline constexpr const char* AbortOnFail = "AbortOnFail";
inline constexpr const char* AbortReason = "Abort Reason";
inline constexpr const char* CanUninstall = "CanUninstall";
inline constexpr const char* CurrentComponentPath = "CurrentComponentPath";
inline constexpr const char* DiscDrive = "DiscDrive";
inline constexpr const char* FUDone = "FUDone";
inline constexpr const char* Install = "Install";
inline constexpr const char* InstallationIni = "InstallationIni";
inline constexpr const char* LastSequence = "LastSequence";
inline constexpr const char* Message = "Message";
inline constexpr const char* NextVolumeName = "NextVolumeName";
inline constexpr const char* NumberOfLoops = "NumberOfLoops";
inline constexpr const char* PackageRoot = "PackageRoot";
inline constexpr const char* Path = "Path";
inline constexpr const char* PreviousVolumeName = "PreviousVolumeName";
inline constexpr const char* ProcessReturn = "Process Return";
inline constexpr const char* Product = "Product";
inline constexpr const char* ProductCode = "ProductCode";
inline constexpr const char* ProductIni = "ProductIni";
inline constexpr const char* ProductIniPath = "ProductIniPath";
inline constexpr const char* ProductName = "ProductName";
inline constexpr const char* ProductVersion = "ProductVersion";
inline constexpr const char* QXIALocalInstall = "QXIALocalInstall";
inline constexpr const char* Reboot = "Reboot";
inline constexpr const char* Rebooted = "Rebooted";
inline constexpr const char* RequestLogon = "RequestLogon";
inline constexpr const char* SequenceNumber = "SequenceNumber";
inline constexpr const char* ServerType = "Server Type";
inline constexpr const char* Silent = "Silent";
inline constexpr const char* SkipPreInstall = "SkipPreInstall";
inline constexpr const char* Succeeded = "Succeeded";
inline constexpr const char* Uninstalled = "Uninstalled";
inline constexpr const char* Verbose = "Verbose";
inline constexpr const char* Version = "Version";
}  // namespace Value

/// A value of the current component's record; "" when there is none.
std::string ComponentValue(Run& run, const char* value);
/// The same, with every way of not giving a value (see IsNotGiven) as "".
std::string GivenComponentValue(Run& run, const char* value);
