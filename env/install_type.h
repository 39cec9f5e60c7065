// The run value "Install Type", by which packages learn that they are removed by this program.
#pragma once

#include <optional>
#include <string>

#include "base/product_record.h"
#include "base/services.h"

namespace assistant {

/// Sets the value for a removal.
void AnnounceUninstall(const ProductRecord& record);

/// Keeps the value as it is now and, when asked or at the end of its scope, puts it back (removes it if there was
/// none).
class InstallTypeKeeper {
 public:
  InstallTypeKeeper(const Services& services, const ProductRecord& record);
  /// What the machine raises (a rehearsed power failure) goes on to the caller.
  ~InstallTypeKeeper() noexcept(false) { putBack(); }
  InstallTypeKeeper(const InstallTypeKeeper&) = delete;
  InstallTypeKeeper& operator=(const InstallTypeKeeper&) = delete;

  void putBack();

 private:
  ProductRecord record_;
  std::optional<std::string> before_;
  bool isBack_ = false;
};

}  // namespace assistant
