#include "exec/pre_install.h"

#include "base/not_built.h"

namespace modQXInstallationMain {

bool PreInstallActions(Run& run) {
  LogNothingDone(run, "PreInstallActions", "Pre-install actions and forbidden installs");
  return true;
}

}  // namespace modQXInstallationMain
