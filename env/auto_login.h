// The operating system's automatic logon, which brings the machine back to where the run goes on after a restart.
#pragma once

#include <string>

#include "base/product_record.h"
#include "base/services.h"

namespace assistant {

/// Whom the system is to log on.
struct LogonAccount {
  std::string password;
  std::string user;
  std::string domain;
};

/// Switches automatic logon on (NT family) or sets the default password (Windows 95 family) for the product of this
/// record, whose name is recorded first: without that record nobody would switch it off again. True when every value
/// was written. Whatever was set before is overwritten. Failures (6087, 6096) are logged; the password never is.
bool EnableAutoLogin(const Services& services, const ProductRecord& record, const LogonAccount& account);

/// True when a run of this program switched automatic logon on and none has switched it off since.
bool IsAutoLoginOurs(const ProductRecord& record);

/// Switches it off again, empties the account's values that are there, but the domains, and then forgets who switched
/// it on. A value that is refused does not keep the others. True when nothing was refused.
bool DisableAutoLogin(const Services& services, const ProductRecord& record);

}  // namespace assistant
