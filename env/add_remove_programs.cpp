#include "env/add_remove_programs.h"

#include <string>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/ini.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "env/local_copy.h"
#include "exec/guarded_run.h"

namespace {

constexpr const char* Source = "SetLocalIAForUninstall";
constexpr const char* CopySource = "CopyIALocal";
constexpr const char* CleanUpSource = "CleanUpUninstallFiles";
constexpr const char* UpdateAddress = "http://www.qx-plc.example/installation";
constexpr const char* SupportAddress = "http://www.qx-plc.example/support";

std::string EntryKey(const Run& run) {
  return "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + run.productName;
}

void CopyIALocal(Run& run) {
  CreateLocalFolder(run);
  run.log.Log(CopySource, 0, "Attempting to copy QXIA exe to program files\\qxia dir");
  CopyProgramToLocalFolder(run);
  run.log.Log(CopySource, 0, "Copy Successful");
}

struct EntryValue {
  const char* name;
  std::string data;
  platform::ValueType type = platform::ValueType::Text;
};

void WriteEntry(Run& run) {
  const std::string program = LocalProgram(run);
  const EntryValue values[] = {
      {"DisplayName", run.productName},
      {"DisplayVersion", modRegistry::ReadOrEmpty(run, ProductKey(run), Value::Version)},
      // The path is not quoted: the program cuts it off by comparing with its own.
      {"UninstallString", program + " /v /x " + run.productName},
      {"DisplayIcon", program},
      {"URLUpdateInfo", UpdateAddress},
      {"HelpLink", SupportAddress},
      {"Publisher", "QX plc"},
      {"NoModify", "1", platform::ValueType::Number},
      {"NoRepair", "1", platform::ValueType::Number},
  };
  for (const EntryValue& value : values) {
    modRegistry::RegWrite(run, EntryKey(run), value.name, value.data, platform::RegistryRoot::LocalMachine, value.type);
  }
}

/// What is left of the record must keep its entry, by which the uninstall is run again.
void DeleteKey(Run& run, const std::string& key) {
  modRegistry::DeleteIfThere(run, key);
  if (modRegistry::RegKeyExists(run, key, "")) throw modErrorBase::MakeError(6166, {"HKLM\\" + key}, CleanUpSource);
}

}  // namespace

void SetLocalIAForUninstall(Run& run) {
  Guarded(run, Source, [&] {
    const std::string wanted =
        modINI::GetIniString(run, "Product", Value::CanUninstall, "False", run.productIniPath, true);
    run.log.Log(Source, 0, "CanUninstall reported as " + wanted);
    if (!IsTrue(wanted)) return;
    CopyIALocal(run);
    const std::string key = ProductKey(run);
    modRegistry::RegWrite(run, key, Value::CanUninstall, wanted);
    run.log.Log(CopySource, 0, "Setting Registry value " + key + "\\CanUninstall = " + wanted);
    run.log.Log(CopySource, 0, "Setting Add/Remove Programs entries");
    WriteEntry(run);
  });
}

void CleanUpUninstallFiles(Run& run) {
  GuardedRun(run, CleanUpSource, [&] {
    const bool needed = IsLocalCopyNeeded(run, run.productName);
    modRegistry::RegWrite(run, ProductsKey, Value::Uninstalled, run.productName);
    if (modRegistry::RegKeyExists(run, ProductKey(run), "")) {
      run.log.Log(CleanUpSource, 0, "Removing Product registry entries");
      DeleteKey(run, ProductKey(run));
    }
    run.log.Log(CleanUpSource, 0, "Removing Add/Remove Programs entry");
    DeleteKey(run, EntryKey(run));
    // The entry is what starts the local copy.
    if (!needed && run.fso.FileExists(LocalProgram(run))) run.programToRemove = LocalProgram(run);
  });
}

void ForgetCleanUp(Run& run) {
  if (run.uninstall && !run.failed && IsCleanUpUnfinished(run)) {
    modRegistry::RemoveValue(run, ProductsKey, Value::Uninstalled);
  }
}

bool IsCleanUpUnfinished(Run& run) {
  return EqualIgnoringCase(modRegistry::ReadOrEmpty(run, ProductsKey, Value::Uninstalled), run.productName);
}
