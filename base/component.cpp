#include "base/component.h"

#include "base/paths.h"
#include "base/registry.h"
#include "base/text.h"

namespace assistant {
namespace {

enum class Origin {
  Ini,       ///< copied from the ini key of the same name
  Computed,  ///< worked out by whoever reads the component
};

struct Field {
  const char* value;  ///< name in the record; that of the ini key as well
  std::string Component::*text;
  Origin origin = Origin::Computed;
  const char* defaultText = "";
  Need need = Need::Optional;
  Form form = Form::Text;
};

constexpr Field FieldsBeforeNumber[] = {
    {"Install", &Component::install, Origin::Ini, MissingValue, Need::Required},
    {"ProductName", &Component::productName},
    {"ProductVersion", &Component::productVersion},
    {"ProductCode", &Component::productCode},
    {"IniPath", &Component::iniPath},
    {"Path", &Component::path, Origin::Ini},
    {"CommandLine", &Component::commandLine, Origin::Ini, MissingValue, Need::Required},
    {"Transform", &Component::transform, Origin::Ini, NotApplicable},
    {"Upgrade", &Component::upgrade, Origin::Ini, MissingValue, Need::Required},
    {"CopyOp", &Component::copyOp, Origin::Ini, MissingValue, Need::Required},
    {"Cleanup", &Component::cleanup, Origin::Ini, "false", Need::Optional, Form::Truth},
    {ComponentValue::CopyOpTarget, &Component::copyTarget, Origin::Ini},
    {"MachineType", &Component::machineType, Origin::Ini, MissingValue, Need::Required},
    {"Cost", &Component::cost, Origin::Ini, MissingValue, Need::Required},
};

// The sequence number stands between the two.
constexpr Field FieldsBehindNumber[] = {
    {ComponentValue::UninstallCommandLine, &Component::uninstallCommandLine, Origin::Ini},
    {"RunOnUninstall", &Component::runOnUninstall},
    {ComponentValue::AbortOnFail, &Component::abortOnFail, Origin::Ini, "false", Need::Optional, Form::Truth},
};

template <class Action>
void ForEachField(Action action) {
  for (const Field& field : FieldsBeforeNumber) action(field);
  for (const Field& field : FieldsBehindNumber) action(field);
}

void WriteText(const Services& services, const Component& component, const Field& field) {
  const std::string& text = component.*field.text;
  RequireStorable(text, field.value, component.name, component.iniPath);
  WriteNow(services, component, field.value, text);
}

void WriteNumber(const Services& services, const Procedure& here, const Component& component) {
  modRegistry::WriteNumber(services, component.key, ComponentValue::SequenceNumber,
                           static_cast<std::int32_t>(component.sequenceNumber));
  if (modRegistry::RegKeyExists(services.machine.registry(), component.key, ComponentValue::SequenceNumber)) return;
  throw here.failure(6087, {"HKLM\\" + component.key, ComponentValue::SequenceNumber});
}

}  // namespace

std::string Component::displayName() const {
  return IsNotGiven(productName) ? name : productName;
}

std::string ConditionListKey(const std::string& componentKey) {
  return componentKey + "\\ConditionList";
}

std::string CopyTargetListKey(const std::string& componentKey) {
  return componentKey + "\\CopyOpTargetList";
}

void ReadFromIni(Component& component, const modINI::IniFile& ini) {
  ForEachField([&](const Field& field) {
    if (field.origin != Origin::Ini) return;
    const modINI::Missing missing = field.need == Need::Required ? modINI::Missing::IsLogged : modINI::Missing::IsFine;
    const std::string text = modINI::GetIniString(ini, component.name, field.value, field.defaultText, missing);
    component.*field.text = field.form == Form::Truth ? TrueOrFalse(IsTrue(text)) : text;
  });
}

void WriteRecord(const Services& services, const Procedure& here, const Component& component) {
  for (const Field& field : FieldsBeforeNumber) WriteText(services, component, field);
  WriteNumber(services, here, component);
  for (const Field& field : FieldsBehindNumber) WriteText(services, component, field);
}

Component ReadRecord(platform::RegistryReader& registry, const std::string& product, const std::string& name,
                     const std::string& packageRoot) {
  Component component;
  component.name = name;
  component.key = ComponentKey(product, name);
  ForEachField([&](const Field& field) { component.*field.text = ReadNow(registry, component, field.value); });
  component.sequenceNumber = RecordedSequenceNumber(registry, product, name);
  component.folder = Normalised(IsFullPath(component.path) ? component.path : Joined(packageRoot, component.path));
  return component;
}

std::string ReadNow(platform::RegistryReader& registry, const Component& component, const char* value) {
  return modRegistry::ReadOrEmpty(registry, component.key, value);
}

void WriteNow(const Services& services, const Component& component, const char* value, const std::string& text) {
  modRegistry::RegWrite(services, component.key, value, text);
}

double RecordedSequenceNumber(platform::RegistryReader& registry, const std::string& product,
                              const std::string& component) {
  return modRegistry::ReadNumber(registry, ComponentKey(product, component), ComponentValue::SequenceNumber);
}

}  // namespace assistant
