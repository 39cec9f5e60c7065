// The folders, network shares and drive mappings that a product needs on the machine.
#pragma once

#include <cstdint>
#include <string>

#include "base/run.h"

/// Reads the share definitions beside the application ini into the run.
void ValidateShares(Run& run);

/// Creates the folders that the product ini's [folders] section lists.
void CreateFolders(Run& run);

/// Creates the shares with their folders and records. 0 when all are there.
std::int32_t CreateShares(Run& run);

/// Maps the build server's package share when the product ini's [Connection] section asks for it. Does nothing while no
/// product ini is known.
void MapDriveIfRequired(Run& run);

/// The path with a leading share reference replaced by the share's folder; as it was when it refers to no known share.
std::string ResolveQXSharePath(Run& run, const std::string& path);
