// Accounts, as the system's access lists name them.
#pragma once

#include "platform/files.h"
#include "platform/win32/windows_api.h"

namespace win32 {

/// The identity of an account that every machine knows, for an OwnedIdentity; null after a failure.
PSID NewIdentity(platform::Account account);

/// True for accounts that may do everything anyway: administrators, the system and its services, who a folder's owner
/// may be (CREATOR OWNER), power users, who can make themselves administrators, and the user of this program.
bool IsTrusted(PSID account);

}  // namespace win32
