#include "env/forced_removal.h"

#include <string>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/ini.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "env/install_type.h"
#include "env/reboot.h"
#include "env/uninstall_component.h"
#include "exec/msi_queries.h"
#include "exec/process.h"

namespace {

constexpr const char* UninstallSource = "ForceUninstall";
constexpr const char* DeleteSource = "ForceDelete";

void LogVerbose(Run& run, const char* source, const std::string& text) {
  if (run.verbose) run.log.Log(source, 0, text);
}

void ForceUninstallOf(Run& run, const std::string& entry) {
  const std::string code = modINI::GetIniString(run, "ForceUninstall", entry, MissingValue, run.productIniPath, false);
  const std::string log = Joined(run.logFolders.msiLogs, AsFileName("ForceUninstall_" + entry + ".log"));
  run.window.Component(entry);
  LogVerbose(run, UninstallSource, "Starting forced uninstall of " + entry);
  const std::string command = PackageRemovalCommand(code, run.verbose ? " /l*v " + Quoted(log) : std::string());
  const std::int32_t result = GoShell(run, command, "");
  if (result != 0) {
    run.log.Log("Error", 0, "Error " + std::to_string(result) + " returned wilst running " + command, false,
                EntryType::Warning);
  }
  const bool whole = ListInstalledProducts(run);
  if (!whole || FindInstalledProduct(run, code) != nullptr) {
    LogFailure(run, UninstallSource, modErrorBase::MakeError(6092, {entry}, UninstallSource));
  }
}

void UninstallAll(Run& run) {
  int index = 0;
  for (const std::string& entry : run.forceUninstall) {
    ++index;
    if (!entry.empty()) ForceUninstallOf(run, entry);
    run.window.ProgressBar(index * 100 / static_cast<int>(run.forceUninstall.size()));
  }
}

void ForceDeleteOf(Run& run, const std::string& path) {
  if (!IsBelowRoot(path)) {
    run.log.Log(DeleteSource, 0,
                path + " is not deleted: section [ForceDelete] of " + run.appIniPath +
                    " must name a file or folder by its full path.",
                false, EntryType::Warning);
  } else if (run.fso.FolderExists(path)) {
    LogVerbose(run, DeleteSource, "Deleting folder " + path);
    run.fso.DeleteFolderForced(path);
  } else if (run.fso.FileExists(path)) {
    run.log.Log(DeleteSource, 0, "Deleting file " + path);
    run.fso.DeleteFileForced(path);
  }
}

}  // namespace

bool ForceUninstall(Run& run) {
  return Guarded(run, UninstallSource, [&] {
    InstallTypeKeeper installType(run);
    AnnounceUninstall(run);
    if (run.forceUninstall.empty()) {
      run.window.Status("No forced un-installs");
      LogVerbose(run, UninstallSource, "No forced un-installs");
      return true;
    }
    run.window.Status("Carrying out forced un-install");
    LogVerbose(run, UninstallSource, "Starting forced uninstall");
    run.window.ProgressBar(0);
    UninstallAll(run);
    modRegistry::RegWrite(run, ProductKey(run), Value::FUDone, TrueOrFalse(true));
    LogVerbose(run, UninstallSource, "Re-setting sequence to 0 in register");
    modRegistry::RegWrite(run, ProductKey(run), Value::LastSequence, "0");
    installType.PutBack();
    if (IsTrue(modRegistry::ReadOrEmpty(run, ProductsKey, "Force Uninstall Reboot"))) RestartAndResume(run);
    return true;
  });
}

void ForceDelete(Run& run) {
  if (run.forceDelete.empty()) {
    run.window.Status("No forced deletes");
    run.log.Log(DeleteSource, 0, "No forced deletes");
    return;
  }
  run.window.Status("Carrying out forced deletes");
  LogVerbose(run, DeleteSource, "Starting forced delete");
  run.window.ProgressBar(0);
  int index = 0;
  for (const std::string& path : run.forceDelete) {
    Guarded(run, DeleteSource, [&] { ForceDeleteOf(run, Normalised(Unquoted(path))); });
    run.window.ProgressBar(++index * 100 / static_cast<int>(run.forceDelete.size()));
  }
}
