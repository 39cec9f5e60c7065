// References to the product's network shares in paths.
#pragma once

#include <string>
#include <vector>

#include "base/app_log.h"
#include "platform/registry.h"

namespace assistant {

/// One network share that the product needs.
struct Share {
  std::string name;
  std::string folder;
  std::string machineTypes;  ///< query for the machines that need it; "" for all
  bool applies = true;       ///< this machine is one of them
};
using Shares = std::vector<Share>;

/// Key below which the folders of the shares that were made are recorded, a value each.
inline constexpr const char* LocationsKey = "Software\\Tarvel\\Installation\\Locations";

/// What a path with a share reference is resolved with.
struct ShareResolver {
  platform::RegistryReader& registry;  ///< knows the shares that are there
  clsAppLog& log;
  const Shares& shares;  ///< those that this product brings
};

/// The path with a leading share reference replaced by the share's folder. A drive path stays as it is, and so does one
/// that refers to no known share.
std::string ResolveQXSharePath(const ShareResolver& resolver, const std::string& path);

}  // namespace assistant
