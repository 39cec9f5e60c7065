// Who is let into the folders of a copy.
#pragma once

#include <string>
#include <vector>

#include "base/procedure.h"
#include "base/services.h"

namespace assistant {

/// Sets the access lists of one copy's folders. On the machine's own drives before the first file comes, so that nobody
/// can change what is copied; on a network's behind the last, since the installer may be no administrator there. The
/// hold folder becomes the administrators' alone, and what its component does not have is deleted. Raises what is
/// refused.
class CopyGuard {
 public:
  /// `holdRoot` is the product's folder for what runs from a copy; "" for any other target.
  CopyGuard(const Services& services, const Procedure& here, std::string holdRoot)
      : services_(services), here_(here), holdRoot_(std::move(holdRoot)) {}

  /// Makes the target with its missing parents and guards it for the files of `source`.
  void makeTarget(const std::string& source, const std::string& target);
  /// A folder of the copy, before its first file comes.
  void enter(const clsFso::CopiedFolder& folder);
  /// Behind the last file.
  void finish();

 private:
  void guard(const clsFso::CopiedFolder& folder);
  void makeSafe(const clsFso::CopiedFolder& folder);
  void guardFiles(const std::string& folder);
  bool onNetwork(const std::string& path);

  const Services& services_;
  const Procedure& here_;
  std::string holdRoot_;
  std::vector<clsFso::CopiedFolder> later_;
};

}  // namespace assistant
