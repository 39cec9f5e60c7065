// What Windows Installer knows about package files and about the products on this machine.
#pragma once

#include <string>

#include "base/run.h"

namespace modMSI {

/// Product name, version and code out of a package file (its Property table). False after a failure, which is logged
/// (6140 no such file, 6141 to 6143 not a readable package); the outputs are empty then. A property that the package
/// does not have is empty.
bool GetMSIData(Run& run, const std::string& package, std::string& productName, std::string& productVersion,
                std::string& productCode);

}  // namespace modMSI

/// Rebuilds run.installedProducts. A machine without products has one record with empty fields. A product that does not
/// tell its name or version keeps that field empty (6147 in the log). False, with a warning in the log, when the list
/// broke off before its end.
bool ListInstalledProducts(Run& run);

/// Rebuilds the list and writes it to the log.
void LogInstalledMSIs(Run& run);

/// False for the texts that stand for "no product code"; such a code matches no installed product.
bool IsProductCode(const std::string& code);

/// The first record of the list with that product code, or null.
const InstalledProduct* FindInstalledProduct(const Run& run, const std::string& code);
