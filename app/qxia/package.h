// What a Windows Installer package says of itself, read from the real .msi file.
#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace qxia {

/// A package that cannot be read, as one line: the file and what is wrong with it.
class PackageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct MsiPackage {
  std::string productName;
  std::string productVersion;
  std::string productCode;                        ///< with its braces, as it is written
  std::string platforms;                          ///< of the summary: "Intel", "x64", "Intel64"; "" where it has none
  std::map<std::string, std::string> properties;  ///< the Property table
  bool asksForRestart = false;                    ///< an action ScheduleReboot or ForceReboot in its execute sequence

  bool isFor64Bit() const { return platforms == "x64" || platforms == "Intel64"; }
};

/// Reads a package of the host. Raises PackageError when it is not there, cannot be read or is no package.
MsiPackage ReadPackage(const std::string& hostPath);

}  // namespace qxia
