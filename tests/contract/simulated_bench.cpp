// The contract tests' side on which the simulated workstation is the machine.
#include <algorithm>
#include <filesystem>

#include "platform/simulated/workstation.h"
#include "tests/contract/bench.h"
#include "tests/support/temporary_folder.h"

namespace contract {
namespace {

class SimulatedBench : public Bench {
 public:
  SimulatedBench() { workstation_.files().put(workstation_.machine().programPath(), "program"); }

  platform::Platform& machine() override { return workstation_; }

  std::string command(int milliseconds, int exitCode) override {
    const std::string line =
        "waiting.exe --wait " + std::to_string(milliseconds) + " --exit " + std::to_string(exitCode);
    declare(line, milliseconds, exitCode);
    return line;
  }

  bool agreesToSessionEnd() override { return !workstation_.screen().objectsToSessionEnd(); }
  void endSession() override { workstation_.screen().endSessionNow(); }

  std::string batchFile(const std::string& folder, int exitCode) override {
    const std::string path = folder + "\\code.bat";
    workstation_.files().put(path, "exit " + std::to_string(exitCode));
    declare(path, 50, exitCode);
    return path;
  }

  bool addName(const std::string& file, const std::string& name) override {
    std::error_code failure;
    std::filesystem::create_hard_link(host(file), host(name), failure);
    return !failure;
  }

  bool openToAll(const std::string& path) override {
    simulated::AccessList open = workstation_.files().accessList(path);
    open.grants["Everyone"] = "full";
    workstation_.files().setAccessList(path, open);
    return true;
  }

  std::string package(const std::string& folder) override {
    const std::string path = folder + "\\contract.msi";
    workstation_.files().put(path, "package");
    workstation_.installer().declare({path, PackageName, PackageVersion, PackageCode});
    return path;
  }

 private:
  std::string host(const std::string& path) const {
    std::string below = path.substr(2);
    std::replace(below.begin(), below.end(), '\\', '/');
    return workstation_.ownFolder(path[0]) + below;
  }

  void declare(const std::string& part, int milliseconds, int exitCode) {
    simulated::Outcome outcome;
    outcome.exitCode = exitCode;
    outcome.milliseconds = static_cast<std::uint32_t>(milliseconds);
    workstation_.processes().declare({part, outcome, simulated::Match::Contains});
  }

  TemporaryFolder folder_;
  simulated::Workstation workstation_{folder_.path()};
};

}  // namespace

std::unique_ptr<Bench> MakeBench() {
  return std::make_unique<SimulatedBench>();
}

}  // namespace contract

int main(int count, char** words) {
  testing::InitGoogleTest(&count, words);
  return RUN_ALL_TESTS();
}
