#include "app/qxia/rehearse/snapshot.h"

#include <filesystem>
#include <functional>
#include <string_view>

#include "platform/simulated/host.h"
#include "platform/simulated/reg_file.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

namespace fs = std::filesystem;

constexpr struct {
  const char* name;
  const char* shown;
} Roots[] = {{"HKEY_LOCAL_MACHINE", "HKLM"}, {"HKEY_CURRENT_USER", "HKCU"}};

constexpr std::uint32_t TextType = 1;
constexpr std::uint32_t NumberType = 4;

/// A text as it is, a number in decimal, anything else as .reg files write it.
std::string Shown(const simulated::Registry& registry, const std::string& key, const std::string& name) {
  const simulated::RegistryValue* value = registry.find(key, name);
  if (value->type == TextType || value->type == NumberType) return registry.text(key, name);
  const std::string line = simulated::ValueLine(*value);
  return line.substr(line.find("=hex") + 1);
}

void AddKey(const simulated::Registry& registry, const std::string& key, const std::string& shown, Snapshot& snapshot) {
  for (const std::string& name : registry.values(key)) snapshot.registry[{shown, name}] = Shown(registry, key, name);
  for (const std::string& below : registry.keys(key))
    AddKey(registry, key + "\\" + below, shown + "\\" + below, snapshot);
}

/// Size and digest of what the file holds.
std::string Digest(const std::string& path) {
  constexpr std::size_t weight = 31;
  std::size_t size = 0;
  std::size_t digest = 0;
  simulated::ReadHostFileInParts(path, [&](std::string_view part) {
    size += part.size();
    digest = digest * weight + std::hash<std::string_view>{}(part);
  });
  return std::to_string(size) + ":" + std::to_string(digest);
}

void AddDrive(char letter, const fs::path& folder, Snapshot& snapshot) {
  std::error_code failure;
  for (fs::recursive_directory_iterator entry(folder, failure), end; !failure && entry != end;
       entry.increment(failure)) {
    if (!entry->is_regular_file(failure)) continue;
    std::string path = std::string(1, letter) + ":\\" + entry->path().lexically_relative(folder).string();
    for (char& c : path)
      if (c == '/') c = '\\';
    snapshot.files[path] = Digest(entry->path().string());
  }
}

}  // namespace

Snapshot TakeSnapshot(simulated::Workstation& machine) {
  Snapshot snapshot;
  for (const auto& root : Roots) AddKey(machine.registry(), root.name, root.shown, snapshot);
  for (const auto& [letter, drive] : machine.files().allDrives())
    if (drive.writable && drive.ready) AddDrive(letter, drive.folder, snapshot);
  return snapshot;
}

std::vector<RegistryChange> RegistryChanges(const Snapshot& before, const Snapshot& after) {
  std::vector<RegistryChange> changes;
  for (const auto& [place, data] : after.registry) {
    const auto was = before.registry.find(place);
    if (was == before.registry.end()) {
      changes.push_back({place.first, place.second, std::nullopt, data});
    } else if (was->second != data) {
      changes.push_back({place.first, place.second, was->second, data});
    }
  }
  for (const auto& [place, data] : before.registry)
    if (after.registry.count(place) == 0) changes.push_back({place.first, place.second, data, std::nullopt});
  return changes;
}

std::vector<FileChange> FileChanges(const Snapshot& before, const Snapshot& after) {
  std::vector<FileChange> changes;
  for (const auto& [path, bytes] : after.files) {
    const auto was = before.files.find(path);
    if (was == before.files.end()) {
      changes.push_back({path, "created"});
    } else if (was->second != bytes) {
      changes.push_back({path, "changed"});
    }
  }
  for (const auto& [path, bytes] : before.files)
    if (after.files.count(path) == 0) changes.push_back({path, "deleted"});
  return changes;
}

std::string HostFile(simulated::Workstation& machine, const std::string& path) {
  const std::string full = machine.files().fullPath(path);
  const auto drive = machine.files().allDrives().find(simulated::UpperLetter(full.empty() ? 'C' : full[0]));
  if (full.size() < 4 || drive == machine.files().allDrives().end()) return "";
  std::string host = drive->second.folder;
  for (const std::string& name : simulated::Split(full.substr(3), '\\')) {
    const std::string entry = simulated::FindHostEntry(host, name);
    if (entry.empty()) return "";
    host += "/" + entry;
  }
  return host;
}

}  // namespace qxia
