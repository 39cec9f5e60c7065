// Privileges of this program's own token.
#pragma once

#include "platform/status.h"

namespace win32 {

/// Switches one on that the account holds. A failure also where it holds none of that name.
platform::Status EnablePrivilege(const char* privilege);

}  // namespace win32
