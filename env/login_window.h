// The window that captures the password for automatic logon.
#pragma once

#include "base/product_record.h"
#include "base/services.h"

namespace assistant::frmLogin {

/// True when the product's record asks for logon details and this is its first or only disc.
bool IsWanted(const ProductRecord& record);

/// Shows the window, on silent runs too, until two equal passwords are given or it is cancelled, and switches automatic
/// logon on for the product of this record. False when it was cancelled: nothing is written then. Failures of the
/// writing are logged and let the run go on.
bool Show(const Services& services, const ProductRecord& record);

}  // namespace assistant::frmLogin
