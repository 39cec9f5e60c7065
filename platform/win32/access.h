// Access lists of files and folders.
#pragma once

#include <string>
#include <vector>

#include "platform/files.h"

namespace win32 {

/// Replaces the whole access list by these grants; those of a folder pass on to what it will hold.
/// CallNotImplemented on volumes that keep no access lists.
platform::Status ReplaceAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants);

}  // namespace win32
