#include "env/forced_removal.h"

#include <cstdint>
#include <string>
#include <vector>

#include "base/ini.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"
#include "env/install_type.h"
#include "env/removal_plan.h"
#include "exec/msi_queries.h"
#include "exec/process.h"

namespace assistant {
namespace {

constexpr const char* Section = "ForceUninstall";

/// One product that is to go, whoever installed it.
struct ForcedRemoval {
  std::string entry;  ///< of the list
  std::string code;
  std::string command;
};

ForcedRemoval PlanForcedRemoval(const Run& run, const std::string& entry) {
  const std::string code =
      Trim(modINI::GetIniString(run.productIni(), Section, entry, MissingValue, modINI::Missing::IsLogged));
  const std::string log = Joined(run.logFolders.msiLogs, AsFileName("ForceUninstall_" + entry + ".log"));
  const bool isLogged = run.services.log.isVerbose() && !run.logFolders.msiLogs.empty();
  const std::string logOption = isLogged ? " /l*v " + Quoted(log) : std::string();
  return {entry, code, PackageRemovalCommand(code, logOption)};
}

/// Without a code msiexec would wait in its help window.
void TellWithoutCode(const Run& run, const Procedure& here, const std::string& entry) {
  here.error("Key " + entry + " in section [" + Section + "] of " + run.product.inis.product +
             " is empty, so nothing is removed for it. Give it the product code of what is to go.");
  here.error(6092, {entry});
}

void CarryOut(const Services& services, const Procedure& here, const ForcedRemoval& removal) {
  here.detail("Starting forced uninstall of " + removal.entry);
  const std::int32_t result = GoShell(services, removal.command, "");
  if (result != 0) here.warn("Error " + std::to_string(result) + " returned wilst running " + removal.command);
  const InstalledProducts installed = ListInstalledProducts(services);
  if (!installed.whole || installed.find(removal.code) != nullptr) here.error(6092, {removal.entry});
}

void RemoveForced(const Run& run, const Procedure& here, const std::string& entry) {
  run.services.window.component(entry);
  const ForcedRemoval removal = PlanForcedRemoval(run, entry);
  removal.code.empty() ? TellWithoutCode(run, here, entry) : CarryOut(run.services, here, removal);
}

void UninstallAll(const Run& run, const Procedure& here) {
  const std::vector<std::string>& entries = run.product.forced.uninstall;
  int index = 0;
  for (const std::string& entry : entries) {
    ++index;
    if (run.services.window.endWanted()) return;
    if (!entry.empty()) RemoveForced(run, here, entry);
    run.services.window.progressBar(index * 100 / static_cast<int>(entries.size()));
  }
}

ForcedEnd UninstallForced(const Run& run, const Procedure& here) {
  const ProductRecord record = run.record();
  InstallTypeKeeper installType(run.services, record);
  AnnounceUninstall(record);
  if (run.product.forced.uninstall.empty()) {
    run.services.window.status("No forced un-installs");
    here.detail("No forced un-installs");
    return ForcedEnd::Done;
  }
  run.services.window.status("Carrying out forced un-install");
  here.detail("Starting forced uninstall");
  run.services.window.progressBar(0);
  UninstallAll(run, here);
  if (run.services.window.endWanted()) {
    installType.putBack();
    return ForcedEnd::Done;
  }
  record.write(Value::FUDone, TrueOrFalse(true));
  here.detail("Re-setting sequence to 0 in register");
  record.write(Value::LastSequence, "0");
  installType.putBack();
  return record.isTrue(Value::ForceUninstallReboot) ? ForcedEnd::RestartWanted : ForcedEnd::Done;
}

enum class ForcedDelete { Refused, Folder, File, Nothing };

ForcedDelete WhatToDelete(clsFso& fso, const std::string& path) {
  if (!IsBelowRoot(path)) return ForcedDelete::Refused;
  if (fso.folderExists(path)) return ForcedDelete::Folder;
  return fso.fileIsGone(path) ? ForcedDelete::Nothing : ForcedDelete::File;
}

void DeleteForced(const Run& run, const Procedure& here, const std::string& path) {
  clsFso& fso = run.services.fso;
  switch (WhatToDelete(fso, path)) {
    case ForcedDelete::Refused:
      here.warn(path + " is not deleted: section [ForceDelete] of " + run.product.inis.application +
                " must name a file or folder by its full path.");
      return;
    case ForcedDelete::Folder:
      here.detail("Deleting folder " + path);
      fso.deleteFolderForced(path);
      return;
    case ForcedDelete::File:
      here.action("Deleting file " + path);
      fso.deleteFileForced(path);
      return;
    case ForcedDelete::Nothing:
      return;
  }
}

}  // namespace

ForcedEnd ForceUninstall(const Run& run) {
  const Procedure here(run.services.log, "ForceUninstall");
  return here.guard([&] { return UninstallForced(run, here); });
}

void ForceDelete(const Run& run) {
  const Procedure here(run.services.log, "ForceDelete");
  const std::vector<std::string>& paths = run.product.forced.remove;
  frmMain& window = run.services.window;
  if (paths.empty()) {
    window.status("No forced deletes");
    here.action("No forced deletes");
    return;
  }
  window.status("Carrying out forced deletes");
  here.detail("Starting forced delete");
  window.progressBar(0);
  int index = 0;
  for (const std::string& path : paths) {
    run.services.window.pump();
    if (run.services.window.endWanted()) return;
    here.guard([&] { DeleteForced(run, here, Normalised(Unquoted(path))); });
    window.progressBar(++index * 100 / static_cast<int>(paths.size()));
  }
}

}  // namespace assistant
