// What a Windows Installer package on the media says of itself.
#pragma once

#include <string>

namespace qxia::check {

struct PackageFile {
  bool isRead = false;
  std::string failure;  ///< why it could not be read
  std::string name;
  std::string version;
  std::string code;
  bool isFor64Bit = false;  ///< its platform is x64 or Intel64
  bool restarts = false;    ///< its sequence restarts the machine, or asks for that
};

/// Reads a package of this computer. Never raises: what cannot be read is told in the result.
PackageFile ReadPackage(const std::string& hostPath);

}  // namespace qxia::check
