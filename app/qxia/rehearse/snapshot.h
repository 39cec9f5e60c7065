// What a machine holds: its registry and the files of its own drives, and what changed between two moments.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/simulated/workstation.h"

namespace qxia {

struct RegistryChange {
  std::string key;  ///< "HKLM\..."
  std::string value;
  std::optional<std::string> before;  ///< nothing where it was not there
  std::optional<std::string> after;
};

struct FileChange {
  std::string path;
  const char* change;  ///< "created", "changed", "deleted"
};

struct Snapshot {
  std::map<std::pair<std::string, std::string>, std::string> registry;  ///< by key and name
  std::map<std::string, std::string> files;                             ///< size and digest of what they hold, by path
};

Snapshot TakeSnapshot(simulated::Workstation& machine);
std::vector<RegistryChange> RegistryChanges(const Snapshot& before, const Snapshot& after);
std::vector<FileChange> FileChanges(const Snapshot& before, const Snapshot& after);

/// The host's file behind a path of the machine; "" when it is not there.
std::string HostFile(simulated::Workstation& machine, const std::string& path);

}  // namespace qxia
