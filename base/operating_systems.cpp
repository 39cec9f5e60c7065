#include "base/operating_systems.h"

namespace assistant {
namespace {

constexpr OperatingSystem Systems[] = {
    {1, 4, 0, "Windows 95", "win95", "Win95"},       {1, 4, 10, "Windows 98", "win98", "Win98"},
    {1, 4, 90, "Windows ME", "winme", "WinME"},      {2, 3, 51, "Windows NT 3.51", "winnt3", "WinNT3"},
    {2, 4, 0, "Windows NT 4.0", "winnt4", "WinNT4"}, {2, 5, 0, "Windows 2000", "win2k", "Win2K"},
    {2, 5, 1, "Windows XP", "winxp", "WinXP"},       {2, 5, 2, "Windows 2003", "w2k3", "W2K3"},
};

}  // namespace

std::span<const OperatingSystem> OperatingSystems() {
  return Systems;
}

const OperatingSystem* FindOperatingSystem(const std::string& name) {
  for (const OperatingSystem& system : Systems) {
    if (name == system.name) return &system;
  }
  return nullptr;
}

std::string OperatingSystemName(const platform::SystemVersion& version) {
  for (const OperatingSystem& system : Systems) {
    if (system.platformId == version.platformId && system.major == version.major && system.minor == version.minor) {
      return system.name;
    }
  }
  return "Windows " + std::to_string(version.major) + "." + std::to_string(version.minor);
}

}  // namespace assistant
