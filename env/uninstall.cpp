#include "env/uninstall.h"

#include "base/not_built.h"

namespace modQXInstallationMain {

bool ExecuteUninstall(Run& run, const std::string& component, [[maybe_unused]] bool isMsi,
                      [[maybe_unused]] bool force) {
  LogNothingDone(run, "ExecuteUninstall", "Uninstall of component " + component);
  return false;
}

}  // namespace modQXInstallationMain

void StartUninstall(Run& run) {
  LogNothingDone(run, "StartUninstall", "Uninstall of product " + run.uninstallProduct);
}
