// The folders and network shares that a product needs on the machine.
#pragma once

#include <cstdint>
#include <string>

#include "base/run.h"

/// Reads the share definitions beside the application ini (Config\Shares.csv: name, folder, machine types) into the
/// run. A line that cannot be used is told in the log and passed over.
void ValidateShares(Run& run);

/// True when the folder is there or can be made: its drive exists.
bool FolderWillExist(Run& run, const std::string& path);

/// Creates the folders that the product ini's [folders] section lists. One that cannot be made is logged.
void CreateFolders(Run& run);

/// Creates the shares that this machine type needs, each with its folder, the system's share and a record of it, in
/// their order up to the first that fails, which is logged. 0 when all are there, else -1.
std::int32_t CreateShares(Run& run);

/// The path with a leading share reference replaced by the share's folder. A drive path stays as it is, and so does one
/// that refers to no known share.
std::string ResolveQXSharePath(Run& run, const std::string& path);
