#include "env/forced_removal.h"

#include "base/not_built.h"

bool ForceUninstall(Run& run) {
  if (run.forceUninstall.empty()) {
    run.window.Status("No forced un-installs");
    if (run.verbose) run.log.Log("ForceUninstall", 0, "No forced un-installs");
    return true;
  }
  LogNothingDone(run, "ForceUninstall", "Forced uninstalls");
  return false;
}

void ForceDelete(Run& run) {
  if (run.forceDelete.empty()) {
    run.window.Status("No forced deletes");
    run.log.Log("ForceDelete", 0, "No forced deletes");
    return;
  }
  LogNothingDone(run, "ForceDelete", "Forced deletes");
}
