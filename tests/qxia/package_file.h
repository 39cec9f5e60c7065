// Windows Installer packages for tests, made on the spot.
#pragma once

#include <string>
#include <utility>
#include <vector>

using PackageProperties = std::vector<std::pair<std::string, std::string>>;

/// Writes a package with these rows in its Property table, and actions in its execute sequence.
void WritePackageFile(const std::string& hostPath, const PackageProperties& properties, const std::string& platforms,
                      const std::vector<std::string>& actions = {});
