// What Windows Installer knows about package files and about the products on this machine.
#pragma once

#include <string>
#include <vector>

#include "base/services.h"

namespace assistant {

/// False for the texts that stand for "no product code"; such a code matches no installed product.
bool IsProductCode(const std::string& code);

/// One product that Windows Installer has on this machine.
struct InstalledProduct {
  std::string code;  ///< "{...}", 38 characters
  std::string name;
  std::string version;
};

/// All of them; one record with empty fields stands for none.
struct InstalledProducts {
  std::vector<InstalledProduct> list;
  bool whole = false;  ///< the list did not break off before its end

  /// The first record with that product code, letter case and blanks around it aside, or null.
  const InstalledProduct* find(const std::string& code) const;
};

/// What a package file says of its product; a property that it does not have is empty.
struct PackageData {
  bool read = false;
  std::string name;
  std::string version;
  std::string code;
};

/// Product name, version and code out of a package file (its Property table). After a failure, which is logged (6140 no
/// such file, 6141 to 6143 not a readable package), nothing is read.
PackageData GetMSIData(const Services& services, const std::string& package);

/// Asks for the list. A product that does not tell its name or version keeps that field empty (6147 in the log); a list
/// that broke off is a warning.
InstalledProducts ListInstalledProducts(const Services& services);

/// Asks for the list and writes it to the log.
void LogInstalledMSIs(const Services& services);

}  // namespace assistant
