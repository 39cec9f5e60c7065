// Access lists of files and folders.
#pragma once

#include <string>
#include <vector>

#include "platform/files.h"

namespace win32 {

/// Replaces the whole access list by these grants; those of a folder pass on to what it will hold.
/// CallNotImplemented on volumes that keep no access lists.
platform::Status ReplaceAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants);
/// Adds those grants that the list does not hold, behind its own entries and in front of inherited ones.
platform::Status ExtendAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants);
platform::Status ReplaceOwner(const std::string& path, platform::Account owner);
/// As platform::FileReader::ordinaryUsersMayWrite says.
platform::Status LooseAccess(const std::string& path, bool& mayWrite);

}  // namespace win32
