// The run value "Install Type", by which packages learn that they are removed by this program.
#pragma once

#include <optional>
#include <string>

#include "base/run.h"

/// Sets the value for a removal.
void AnnounceUninstall(Run& run);

/// Keeps the value as it is now and, when asked or at the end of its scope, puts it back (removes it if there was
/// none).
class InstallTypeKeeper {
 public:
  explicit InstallTypeKeeper(Run& run);
  /// What the machine raises (a rehearsed power failure) goes on to the caller.
  ~InstallTypeKeeper() noexcept(false) { PutBack(); }
  InstallTypeKeeper(const InstallTypeKeeper&) = delete;
  InstallTypeKeeper& operator=(const InstallTypeKeeper&) = delete;

  void PutBack();

 private:
  Run& run_;
  std::optional<std::string> before_;
  bool putBack_ = false;
};
