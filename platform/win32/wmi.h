// Queries of Windows Management Instrumentation, bound late: a machine without it answers with a status.
#pragma once

#include <string>
#include <vector>

#include "platform/status.h"

namespace win32 {

/// Binds to `moniker`, runs `query` and collects the "Name" of each item found. A failure yields the component object
/// model's result and no names.
platform::Status QueryManagementNames(const std::string& moniker, const std::string& query,
                                      std::vector<std::string>& names);

}  // namespace win32
