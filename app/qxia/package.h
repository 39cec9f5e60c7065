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
  PackageError(const std::string& file, const std::string& reason)
      : std::runtime_error(file + ": " + reason), reason_(reason) {}
  /// What is wrong, without the file.
  const std::string& reason() const { return reason_; }

 private:
  std::string reason_;
};

struct MsiPackage {
  std::string productName;
  std::string productVersion;
  std::string productCode;                        ///< with its braces, as it is written
  std::string platforms;                          ///< of the summary: "Intel", "x64", "Intel64"; "" where it has none
  std::map<std::string, std::string> properties;  ///< the Property table
  bool asksForRestart = false;                    ///< by REBOOT=Force, or ScheduleReboot or ForceReboot in its sequence

  bool isFor64Bit() const;
};

/// Reads a package of the host, in a process of its own. Raises PackageError when it is not there, cannot be read, is
/// no package or tells no product code.
MsiPackage ReadPackage(const std::string& hostPath);

}  // namespace qxia
