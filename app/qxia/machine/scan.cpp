#include "app/qxia/machine/scan.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "app/qxia/rehearse/play.h"
#include "app/qxia/rehearse/scratch_folder.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

namespace fs = std::filesystem;

constexpr const char* AnyPassword = "password";

/// The packages below the folders that the machine's discs are made of.
std::vector<MediaPackage> FindPackages(const std::vector<Disc>& discs, const std::string& at) {
  std::vector<MediaPackage> packages;
  for (std::size_t i = 0; i < discs.size(); ++i) {
    const std::string root = FirstFolder(i == 0 ? at : "");
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(discs[i].folder)) {
      if (!entry.is_regular_file() || !simulated::EndsWithText(entry.path().string(), ".msi")) continue;
      MediaPackage found;
      found.path = root + "\\" + entry.path().lexically_relative(discs[i].folder).string();
      std::replace(found.path.begin(), found.path.end(), '/', '\\');
      try {
        found.package = ReadPackage(entry.path().string());
      } catch (const PackageError& broken) {
        found.problem = found.path + ": " + broken.reason();
      }
      packages.push_back(found);
    }
  }
  std::sort(packages.begin(), packages.end(),
            [](const MediaPackage& a, const MediaPackage& b) { return a.path < b.path; });
  return packages;
}

void Declare(simulated::Workstation& machine, const std::vector<MediaPackage>& packages) {
  for (const MediaPackage& found : packages) {
    if (!found.problem.empty()) continue;
    simulated::Package package;
    package.path = found.path;
    package.name = found.package.productName;
    package.version = found.package.productVersion;
    package.code = found.package.productCode;
    machine.installer().declare(package);
  }
}

/// The record has the root as the ini writes it; the components' inis lie below what it means.
std::string FindPackageRoot(const std::vector<ComponentRecord>& components) {
  for (const ComponentRecord& component : components) {
    const std::string ini = component.value("IniPath");
    const std::string folder = ini.substr(0, ini.rfind('\\'));
    const std::string below = "\\" + component.value("Path");
    if (simulated::EndsWithText(folder, below)) return folder.substr(0, folder.size() - below.size());
  }
  return "";
}

}  // namespace

Scan ScanMedia(const Media& media, const std::string& at, const std::string& system) {
  const ScratchFolder folder;
  Workplace workplace(folder.path() + "/machine", {media, at, std::nullopt, "", system});
  simulated::Workstation& machine = workplace.machine();
  workplace.permitEverything();
  Scan scan;
  scan.packages = FindPackages(workplace.discs(), at);
  Declare(machine, scan.packages);
  machine.screen().type({AnyPassword, AnyPassword});
  Play(workplace, {}, RunTheProgram);
  scan.components = ReadComponents(machine.registry(), media.product);
  scan.commands = machine.processes().ran();
  const std::vector<std::string> unused = machine.unused();
  for (MediaPackage& found : scan.packages)
    found.used = std::find(unused.begin(), unused.end(), "package " + found.path) == unused.end();
  scan.asksForPassword =
      std::find(unused.begin(), unused.end(), std::string("password ") + AnyPassword) == unused.end();
  scan.packageRoot = FindPackageRoot(scan.components);
  return scan;
}

}  // namespace qxia
