#include "env/install_type.h"

#include "base/procedure.h"

namespace assistant {
namespace {

constexpr const char* Uninstalling = "STUNINST";

}  // namespace

void AnnounceUninstall(const ProductRecord& record) {
  record.write(Value::InstallType, Uninstalling);
}

InstallTypeKeeper::InstallTypeKeeper(const Services& services, const ProductRecord& record) : record_(record) {
  const Procedure here(services.log, "InstallTypeKeeper");
  here.guard([&] {
    if (record_.has(Value::InstallType)) before_ = record_.read(Value::InstallType);
    // Left by a removal that a power failure ended: nobody else writes it.
    if (before_ == Uninstalling) before_.reset();
  });
}

void InstallTypeKeeper::putBack() {
  if (isBack_) return;
  isBack_ = true;
  if (before_) {
    record_.write(Value::InstallType, *before_);
  } else {
    record_.remove(Value::InstallType);
  }
}

}  // namespace assistant
