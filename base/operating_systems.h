// The operating systems that the program tells apart.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/machine.h"

namespace assistant {

struct OperatingSystem {
  std::uint32_t platformId;  ///< 1 the Windows 95 family, 2 the NT family
  std::uint32_t major;
  std::uint32_t minor;
  const char* name;
  const char* keyword;       ///< selects it in a condition, current notation (lower case)
  const char* olderKeyword;  ///< selects it in a condition, older notation
};

/// All of them, the oldest of each family first.
std::span<const OperatingSystem> OperatingSystems();

/// The recognised system of that name (letter case matters), or null.
const OperatingSystem* FindOperatingSystem(const std::string& name);

/// Name of the system; one that is not recognised is "Windows " + major + "." + minor.
std::string OperatingSystemName(const platform::SystemVersion& version);

}  // namespace assistant
