// The log and the ini reader beside the bare work that each of them cannot do without.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "base/ini.h"
#include "base/run.h"
#include "platform/forwarding.h"
#include "platform/simulated/workstation.h"
#include "tests/bench/direct_files.h"
#include "tests/support/temporary_folder.h"

namespace {

using namespace assistant;

/// The simulated workstation, but on the host's own files.
class View : public platform::ForwardingPlatform {
 public:
  explicit View(simulated::Workstation& machine) : ForwardingPlatform(machine) {}

  platform::Files& files() override { return files_; }

 private:
  DirectFiles files_;
};

struct Bench {
  TemporaryFolder folder;
  simulated::Workstation machine{folder.path() + "/machine"};
  View view{machine};
  Run run{view};

  std::string path(const std::string& name) const { return folder.path() + "/" + name; }
};

constexpr const char* Message = "Executing C:\\Media\\Tools\\setup.exe /quiet returned no errors (return code: 0)";

void Log_OneEntry(benchmark::State& state) {
  Bench bench;
  bench.run.services.log.logFilename(bench.path("log.html"));
  for (auto _ : state) bench.run.services.log.log("modMain.ExecuteInstall", 0, Message);
}
BENCHMARK(Log_OneEntry);

/// The same bytes by the same three calls: open, append, close.
void Log_BareSystemCalls(benchmark::State& state) {
  Bench bench;
  const std::string path = bench.path("bare.html");
  bench.run.services.log.logFilename(path);
  bench.run.services.log.log("modMain.ExecuteInstall", 0, Message);
  std::string line;
  DirectFiles files;
  files.read(path, line);
  for (auto _ : state) {
    const int file = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    benchmark::DoNotOptimize(::write(file, line.data(), line.size()));
    ::close(file);
  }
}
BENCHMARK(Log_BareSystemCalls);

/// 30,000 lines, 1 MB, the wanted key last.
std::string BigIni() {
  std::string text = "[Product]\r\n";
  for (int i = 1; i < 29999; ++i) {
    char line[64];
    std::snprintf(line, sizeof line, "Key%05d=some value of no interest\r\n", i);
    text += line;
  }
  return text + "Last=found\r\n";
}

std::string WriteBigIni(Bench& bench) {
  const std::string path = bench.path("big.ini");
  std::FILE* file = std::fopen(path.c_str(), "wb");
  const std::string text = BigIni();
  std::fwrite(text.data(), 1, text.size(), file);
  std::fclose(file);
  return path;
}

void Ini_LastKeyOfBigFile(benchmark::State& state) {
  Bench bench;
  const std::string path = WriteBigIni(bench);
  const modINI::IniFile ini{bench.view.files(), bench.run.services.log, path};
  if (modINI::GetIniString(ini, "Product", "Last", "") != "found") state.SkipWithError("not found");
  for (auto _ : state) {
    benchmark::DoNotOptimize(modINI::GetIniString(ini, "Product", "Last", ""));
  }
}
BENCHMARK(Ini_LastKeyOfBigFile);

/// Reading the file and finding its line ends.
void Ini_BareReadAndLineEnds(benchmark::State& state) {
  Bench bench;
  const std::string path = WriteBigIni(bench);
  DirectFiles files;
  for (auto _ : state) {
    std::string bytes;
    files.read(path, bytes);
    std::size_t lines = 0;
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    while (at < end) {
      const void* found = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
      if (found == nullptr) break;
      ++lines;
      at = static_cast<const char*>(found) + 1;
    }
    benchmark::DoNotOptimize(lines);
  }
}
BENCHMARK(Ini_BareReadAndLineEnds);

}  // namespace
