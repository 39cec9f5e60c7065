#include "env/install_type.h"

#include "base/error_handler.h"
#include "base/registry.h"

namespace {

constexpr const char* InstallType = "Install Type";
constexpr const char* Uninstalling = "STUNINST";

}  // namespace

void AnnounceUninstall(Run& run) {
  modRegistry::RegWrite(run, InstallationKey, InstallType, Uninstalling);
}

InstallTypeKeeper::InstallTypeKeeper(Run& run) : run_(run) {
  Guarded(run, "InstallTypeKeeper", [&] {
    if (modRegistry::RegKeyExists(run, InstallationKey, InstallType)) {
      before_ = modRegistry::RegRead(run, InstallationKey, InstallType);
    }
    // Left by a removal that a power failure ended: nobody else writes it.
    if (before_ == Uninstalling) before_.reset();
  });
}

void InstallTypeKeeper::PutBack() {
  if (putBack_) return;
  putBack_ = true;
  if (before_) {
    modRegistry::RegWrite(run_, InstallationKey, InstallType, *before_);
  } else {
    modRegistry::RemoveValue(run_, InstallationKey, InstallType);
  }
}
