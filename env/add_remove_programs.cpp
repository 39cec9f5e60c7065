#include "env/add_remove_programs.h"

#include <algorithm>
#include <vector>

#include "base/ini.h"
#include "base/procedure.h"
#include "base/registry.h"
#include "base/text.h"
#include "env/local_copy.h"

namespace assistant {
namespace {

constexpr const char* UpdateAddress = "http://www.qx-plc.example/installation";
constexpr const char* SupportAddress = "http://www.qx-plc.example/support";

std::string EntryKey(const std::string& product) {
  return std::string(RemovableProgramsKey) + "\\" + product;
}

struct EntryValue {
  const char* name;
  modRegistry::NewValue data;
};

void WriteEntry(const Run& run, const Procedure& here) {
  const std::string& product = run.product.name;
  const std::string program = LocalProgram(run.machine.machine(), run.program);
  const EntryValue values[] = {
      {"DisplayName", {product}},
      {"DisplayVersion", {Given(run.record().read(Value::Version))}},
      // The path is not quoted: the program cuts it off by comparing with its own.
      {"UninstallString", {program + " /v /x " + product}},
      {"DisplayIcon", {program}},
      {"URLUpdateInfo", {UpdateAddress}},
      {"HelpLink", {SupportAddress}},
      {"Publisher", {"QX plc"}},
      {"NoModify", {"1", platform::ValueType::Number}},
      {"NoRepair", {"1", platform::ValueType::Number}},
  };
  for (const EntryValue& value : values) {
    modRegistry::WriteOrRaise(run.services, here, EntryKey(product), value.name, value.data);
  }
}

/// The copy by which the product can be removed, and its entry, which starts that. `wanted` is the ini file's word for
/// it, which is recorded.
void CopyIALocal(const Run& run, const std::string& wanted) {
  const Procedure here(run.services.log, "CopyIALocal");
  CreateLocalFolder(run.services, here);
  here.action("Attempting to copy QXIA exe to program files\\qxia dir");
  CopyProgramToLocalFolder(run.services, run.program);
  here.action("Copy Successful");
  const ProductRecord record = run.record();
  record.writeOrRaise(here, Value::CanUninstall, wanted);
  here.action("Setting Registry value " + record.key() + "\\" + Value::CanUninstall.name + " = " + wanted);
  here.action("Setting Add/Remove Programs entries");
  WriteEntry(run, here);
}

/// What is left of the record must keep its entry, by which the uninstall is run again.
void DeleteKey(const Services& services, const Procedure& here, const std::string& key) {
  modRegistry::DeleteIfThere(services, key);
  if (modRegistry::RegKeyExists(services.machine.registry(), key, "")) throw here.failure(6166, {"HKLM\\" + key});
}

/// The products whose clean-up began: several, where one broke off and another product was removed before it was tried
/// again. No name holds the separator.
std::vector<std::string> UnfinishedCleanUps(const ProductRecord& record) {
  const std::string marked = record.read(Value::UninstalledProduct);
  return marked.empty() ? std::vector<std::string>() : Split(marked, '|');
}

std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : "|") + name;
  return text;
}

std::vector<std::string> Without(std::vector<std::string> names, const std::string& unwanted) {
  std::erase_if(names, [&](const std::string& name) { return EqualIgnoringCase(name, unwanted); });
  return names;
}

void RemoveTraces(const Services& services, const Procedure& here, const std::string& product) {
  const ProductRecord record(services, product);
  std::vector<std::string> marked = Without(UnfinishedCleanUps(record), product);
  marked.push_back(product);
  // Without the mark an uninstall that is cut off, or refused, behind the record could not be finished.
  record.writeOrRaise(here, Value::UninstalledProduct, Joined(marked));
  if (record.exists()) {
    here.action("Removing Product registry entries");
    DeleteKey(services, here, record.key());
  }
  here.action("Removing Add/Remove Programs entry");
  DeleteKey(services, here, EntryKey(product));
}

}  // namespace

std::optional<std::string> SetLocalIAForUninstall(const Run& run) {
  const Procedure here(run.services.log, "SetLocalIAForUninstall");
  const auto failure = here.failureOf([&] {
    // One that is out of reach must not pass for one that says nothing.
    modINI::OpenIniFile(run.productIni());
    const std::string wanted = modINI::GetIniString(run.productIni(), "Product", Value::CanUninstall.name, "False");
    here.action("CanUninstall reported as " + wanted);
    if (IsTrue(wanted)) CopyIALocal(run, wanted);
  });
  if (!failure) return std::nullopt;
  return run.product.name + " could not be registered for removal: " + *failure;
}

CleanUp CleanUpUninstallFiles(const Run& run) {
  const Procedure here(run.services.log, "CleanUpUninstallFiles");
  CleanUp result;
  result.failure = here.failureOf([&] {
    const std::string program = LocalProgram(run.machine.machine(), run.program);
    const bool needed = IsLocalCopyNeeded(run.machine.registry(), program, run.product.name);
    RemoveTraces(run.services, here, run.product.name);
    // The entry is what starts the local copy.
    if (!needed && !run.services.fso.fileIsGone(program)) result.programToRemove = program;
  });
  return result;
}

void ForgetCleanUp(const Run& run) {
  // What closing down could not write is a failure as well, and the uninstall is run again.
  const bool failed = run.state.failed || run.services.refusals.any();
  if (!run.isUninstall() || failed || !IsCleanUpUnfinished(run)) return;
  const std::vector<std::string> others = Without(UnfinishedCleanUps(run.record()), run.product.name);
  others.empty() ? run.record().remove(Value::UninstalledProduct)
                 : run.record().write(Value::UninstalledProduct, Joined(others));
}

bool IsCleanUpUnfinished(const Run& run) {
  const std::vector<std::string> marked = UnfinishedCleanUps(run.record());
  return std::any_of(marked.begin(), marked.end(),
                     [&](const std::string& name) { return EqualIgnoringCase(name, run.product.name); });
}

}  // namespace assistant
