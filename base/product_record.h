// The values that a run keeps about a product and beside all products: one table says where each lies, which ini key it
// comes from and what becomes of it. docs/registry-reference.md tells the same to users.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "base/procedure.h"
#include "base/record_keys.h"
#include "base/services.h"

namespace assistant {

/// Required ini keys are logged when they are missing.
enum class Need { Required, Optional };
/// How a text from an ini file is kept: as it is, or as "True" or "False".
enum class Form { Text, Truth };

/// The ini key that a value is copied from; without a section there is none.
struct IniOrigin {
  const char* section = nullptr;
  const char* key = nullptr;  ///< null where it is called like the value
  const char* defaultText = MissingValue;
  Need need = Need::Required;
  Form form = Form::Text;
};

/// What the end of a run does with a value.
enum class AtClosedown { Stays, Emptied, Removed };
/// What becomes of a value when a fresh run wipes the record of an earlier one.
enum class OverWipe {
  Goes,
  KeptAsTrue,     ///< a value that is there comes back as "True"
  KeptWhenMeant,  ///< comes back where the application ini means it
};
/// Which discs of a product on several ones write a value.
enum class Discs { Each, FirstOnly };

struct RecordValue {
  RecordKey key;
  const char* name;
  IniOrigin ini = {};
  AtClosedown atClosedown = AtClosedown::Stays;
  OverWipe overWipe = OverWipe::Goes;
  Discs discs = Discs::Each;

  const char* iniKey() const { return ini.key == nullptr ? name : ini.key; }
};

/// Names that stand under more than one key.
namespace ValueName {
inline constexpr const char* AbortOnFail = "AbortOnFail";
inline constexpr const char* Message = "Message";
inline constexpr const char* ProcessReturn = "Process Return";
inline constexpr const char* Product = "Product";
inline constexpr const char* QXIALocalInstall = "QXIALocalInstall";
inline constexpr const char* Uninstalled = "Uninstalled";
inline constexpr const char* Version = "Version";
}  // namespace ValueName

namespace Value {

// Under the installation key: what the run, its components and the site tell each other.
inline constexpr RecordValue CDDrive{RecordKey::Installation, "CD Drive"};
inline constexpr RecordValue ComputerName{RecordKey::Installation, "Computer Name"};
inline constexpr RecordValue CurrentComponentPath{
    RecordKey::Installation, "CurrentComponentPath", {}, AtClosedown::Emptied};
inline constexpr RecordValue CurrentProductVersion{RecordKey::Installation, "Current Product Version"};
inline constexpr RecordValue ForbiddenInstalls{RecordKey::Installation, "Forbidden Installs"};
inline constexpr RecordValue InstallerDirectory{
    RecordKey::Installation, "Installer Directory", {}, AtClosedown::Emptied};
inline constexpr RecordValue InstallType{RecordKey::Installation, "Install Type"};
inline constexpr RecordValue OperatingSystem{RecordKey::Installation, "Operating System"};
inline constexpr RecordValue Reboot{RecordKey::Installation, "Reboot", {}, AtClosedown::Emptied};
inline constexpr RecordValue ServerBuildVersion{RecordKey::Installation, "Server Build Version"};
inline constexpr RecordValue ServerType{RecordKey::Installation, "Server Type"};
inline constexpr RecordValue SiteProduct{RecordKey::Installation, ValueName::Product};
inline constexpr RecordValue SiteProcessReturn{RecordKey::Installation, ValueName::ProcessReturn};
inline constexpr RecordValue SystemDirectory{RecordKey::Installation, "System Directory"};
inline constexpr RecordValue WindowsDirectory{RecordKey::Installation, "Windows Directory"};

// Under the products key: the run that is at work, and what a resumed one needs.
inline constexpr RecordValue ForceUninstallReboot{
    RecordKey::Products, "Force Uninstall Reboot", {"Product", "ForceUninstallReboot", "False"}};
inline constexpr RecordValue InstallationIni{RecordKey::Products, "InstallationIni"};
inline constexpr RecordValue LocalInstance{RecordKey::Products, ValueName::QXIALocalInstall, {}, AtClosedown::Removed};
/// The product that switched automatic logon on; there as long as that is on.
inline constexpr RecordValue LogonSwitchedOnBy{RecordKey::Products, "Automatic Logon"};
inline constexpr RecordValue MailAddress{RecordKey::Products, "MailAddress", {}, AtClosedown::Emptied};
inline constexpr RecordValue Notify{RecordKey::Products, "Notify", {}, AtClosedown::Emptied};
inline constexpr RecordValue ProductIni{RecordKey::Products, "ProductIni"};
inline constexpr RecordValue Rebooted{RecordKey::Products, "Rebooted"};
inline constexpr RecordValue RunProcessReturn{RecordKey::Products, ValueName::ProcessReturn};
inline constexpr RecordValue RunProduct{
    RecordKey::Products, ValueName::Product, {"Product", "Name"}, AtClosedown::Emptied};
inline constexpr RecordValue RunVersion{RecordKey::Products, ValueName::Version, {"Product"}, AtClosedown::Emptied};
inline constexpr RecordValue Silent{RecordKey::Products,
                                    "Silent",
                                    {"Config", nullptr, MissingValue, Need::Required, Form::Truth},
                                    AtClosedown::Emptied};
inline constexpr RecordValue UninstalledProduct{RecordKey::Products, ValueName::Uninstalled};
inline constexpr RecordValue Verbose{RecordKey::Products,
                                     "Verbose",
                                     {"Config", nullptr, MissingValue, Need::Required, Form::Truth},
                                     AtClosedown::Emptied};

// Under the product's own key.
inline constexpr RecordValue AbortOnFail{RecordKey::Product,
                                         ValueName::AbortOnFail,
                                         {"Product", nullptr, MissingValue, Need::Required, Form::Truth},
                                         AtClosedown::Emptied};
inline constexpr RecordValue AbortReason{RecordKey::Product, "Abort Reason"};
inline constexpr RecordValue CanUninstall{RecordKey::Product, "CanUninstall"};
inline constexpr RecordValue ComponentCount{RecordKey::Product, "ComponentCount"};
inline constexpr RecordValue CopyOpHold{RecordKey::Product, "CopyOpHold", {"Product"}};
inline constexpr RecordValue CopyOpRoot{RecordKey::Product, "CopyOpRoot", {"Product"}};
inline constexpr RecordValue DiscDrive{RecordKey::Product, "DiscDrive"};
inline constexpr RecordValue EndMessage{RecordKey::Product, "EndMessage", {}, AtClosedown::Emptied};
inline constexpr RecordValue FUDone{RecordKey::Product, "FUDone"};
inline constexpr RecordValue InstallDate{RecordKey::Product, "Install Date"};
inline constexpr RecordValue LastSequence{RecordKey::Product, "LastSequence", {}, AtClosedown::Emptied};
inline constexpr RecordValue NextVolumeName{
    RecordKey::Product, "NextVolumeName", {"Product", nullptr, MissingValue, Need::Optional}};
inline constexpr RecordValue NumberOfLoops{RecordKey::Product, "NumberOfLoops", {}, AtClosedown::Emptied};
/// The mark of a local copy where older versions left it.
inline constexpr RecordValue OlderLocalInstance{
    RecordKey::Product, ValueName::QXIALocalInstall, {}, AtClosedown::Removed};
inline constexpr RecordValue PackageRoot{
    RecordKey::Product, "PackageRoot", {}, AtClosedown::Stays, OverWipe::KeptWhenMeant};
inline constexpr RecordValue PreviousVolumeName{
    RecordKey::Product, "PreviousVolumeName", {"Product", nullptr, "", Need::Optional}};
inline constexpr RecordValue ProductIniPath{RecordKey::Product, "ProductIniPath"};
inline constexpr RecordValue ProductProcessReturn{RecordKey::Product, ValueName::ProcessReturn};
/// The password belongs to the first disc, whatever a later one says.
inline constexpr RecordValue RequestLogon{
    RecordKey::Product, "RequestLogon", {"Config", "RequestLogonDetails", MissingValue, Need::Required, Form::Truth},
    AtClosedown::Stays, OverWipe::Goes, Discs::FirstOnly};
/// The machine type that the product ini names; that of an earlier disc where a later one names none.
inline constexpr RecordValue ProductServerType{RecordKey::Product, "Product Server Type"};
inline constexpr RecordValue SkipPreInstall{
    RecordKey::Product, "SkipPreInstall", {}, AtClosedown::Stays, OverWipe::KeptAsTrue};
inline constexpr RecordValue Succeeded{RecordKey::Product, "Succeeded"};
inline constexpr RecordValue Version{RecordKey::Product, ValueName::Version};

}  // namespace Value

/// All of them; those that come from the application ini in the order in which it is read.
std::span<const RecordValue* const> RecordValues();

/// The record of one product, and with it the values beside all products. With an empty name the product's own values
/// lie under the products key.
class ProductRecord {
 public:
  ProductRecord(const Services& services, std::string product) : services_(services), product_(std::move(product)) {}

  const std::string& product() const { return product_; }
  std::string key() const { return ProductKey(product_); }
  /// Raises 6162 when that cannot be told, as all that reads here does.
  bool exists() const;
  bool has(const RecordValue& value) const;

  /// "" for a value or a key that is not there.
  std::string read(const RecordValue& value) const;
  bool isTrue(const RecordValue& value) const;
  /// The value in either form, text or number; 0 when there is none or it is no number.
  double readNumber(const RecordValue& value) const;

  /// Writes a text, an empty one included; a failure of the system is not looked at.
  void write(const RecordValue& value, const std::string& text) const;
  void writeNumber(const RecordValue& value, std::int32_t number) const;
  /// Writes what a later step reads: a refusal is told as 6087 and gives false.
  bool writeOrTell(const Procedure& here, const RecordValue& value, const std::string& text) const;
  /// The same, but a refusal is raised.
  void writeOrRaise(const Procedure& here, const RecordValue& value, const std::string& text) const;
  void remove(const RecordValue& value) const;

 private:
  std::string keyOf(const RecordValue& value) const { return KeyOf(value.key, product_); }

  Services services_;
  std::string product_;
};

}  // namespace assistant
