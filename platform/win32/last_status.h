// What the system's own calls returned, as the ports tell it.
#pragma once

#include "platform/status.h"
#include "platform/win32/windows_api.h"

namespace win32 {

/// Why the last call failed. Right behind it: most other calls change it.
inline platform::Status LastStatus() {
  return static_cast<platform::Status>(GetLastError());
}

inline platform::Status StatusOf(BOOL succeeded) {
  return succeeded ? platform::Status::Ok : LastStatus();
}

}  // namespace win32
