#include "base/product_record.h"

#include "base/registry.h"
#include "base/text.h"

namespace assistant {
namespace {

constexpr const RecordValue* Values[] = {
    &Value::RunProduct,
    &Value::AbortOnFail,
    &Value::ForceUninstallReboot,
    &Value::RunVersion,
    &Value::Verbose,
    &Value::Silent,
    &Value::RequestLogon,
    &Value::PreviousVolumeName,
    &Value::NextVolumeName,
    &Value::CopyOpRoot,
    &Value::CopyOpHold,
    // From here on nothing is copied as it stands in the application ini.
    &Value::LastSequence,
    &Value::Notify,
    &Value::MailAddress,
    &Value::CurrentComponentPath,
    &Value::EndMessage,
    &Value::NumberOfLoops,
    &Value::InstallerDirectory,
    &Value::OlderLocalInstance,
    &Value::LocalInstance,
    &Value::AbortReason,
    &Value::CanUninstall,
    &Value::CDDrive,
    &Value::ComponentCount,
    &Value::ComputerName,
    &Value::CurrentProductVersion,
    &Value::DiscDrive,
    &Value::ForbiddenInstalls,
    &Value::FUDone,
    &Value::InstallationIni,
    &Value::InstallDate,
    &Value::InstallType,
    &Value::LogonSwitchedOnBy,
    &Value::OperatingSystem,
    &Value::PackageRoot,
    &Value::ProductIni,
    &Value::ProductIniPath,
    &Value::ProductProcessReturn,
    &Value::ProductServerType,
    &Value::Reboot,
    &Value::Rebooted,
    &Value::RunProcessReturn,
    &Value::ServerBuildVersion,
    &Value::ServerType,
    &Value::SiteProcessReturn,
    &Value::SiteProduct,
    &Value::SkipPreInstall,
    &Value::Succeeded,
    &Value::SystemDirectory,
    &Value::UninstalledProduct,
    &Value::Version,
    &Value::WindowsDirectory,
};

}  // namespace

std::span<const RecordValue* const> RecordValues() {
  return Values;
}

bool ProductRecord::exists() const {
  return modRegistry::RegKeyExists(services_.machine.registry(), key(), "");
}

bool ProductRecord::has(const RecordValue& value) const {
  return modRegistry::RegKeyExists(services_.machine.registry(), keyOf(value), value.name);
}

std::string ProductRecord::read(const RecordValue& value) const {
  return modRegistry::ReadOrEmpty(services_.machine.registry(), keyOf(value), value.name);
}

bool ProductRecord::isTrue(const RecordValue& value) const {
  return IsTrue(read(value));
}

double ProductRecord::readNumber(const RecordValue& value) const {
  return modRegistry::ReadNumber(services_.machine.registry(), keyOf(value), value.name);
}

void ProductRecord::write(const RecordValue& value, const std::string& text) const {
  modRegistry::RegWrite(services_, keyOf(value), value.name, text);
}

void ProductRecord::writeNumber(const RecordValue& value, std::int32_t number) const {
  modRegistry::WriteNumber(services_, keyOf(value), value.name, number);
}

bool ProductRecord::writeOrTell(const Procedure& here, const RecordValue& value, const std::string& text) const {
  return modRegistry::WriteOrTell(services_, here, keyOf(value), value.name, {text});
}

void ProductRecord::writeOrRaise(const Procedure& here, const RecordValue& value, const std::string& text) const {
  modRegistry::WriteOrRaise(services_, here, keyOf(value), value.name, {text});
}

void ProductRecord::remove(const RecordValue& value) const {
  modRegistry::RemoveValue(services_, keyOf(value), value.name);
}

}  // namespace assistant
