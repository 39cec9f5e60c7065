#include "env/add_remove_programs.h"

#include "base/ini.h"
#include "base/not_built.h"
#include "base/text.h"

void SetLocalIAForUninstall(Run& run) {
  const std::string wanted = modINI::GetIniString(run, "Product", "CanUninstall", "False", run.productIniPath, true);
  run.log.Log("SetLocalIAForUninstall", 0, "CanUninstall reported as " + wanted);
  if (IsTrue(wanted)) LogNothingDone(run, "SetLocalIAForUninstall", "Add/Remove Programs registration");
}

void CleanUpUninstallFiles(Run& run) {
  LogNothingDone(run, "CleanUpUninstallFiles", "Clean-up after the uninstall");
}
