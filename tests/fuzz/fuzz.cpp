#include "tests/fuzz/fuzz.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/simulated/host.h"

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

std::string TakeLine(std::string& text) {
  const std::size_t end = text.find('\n');
  const std::string line = text.substr(0, end);
  text.erase(0, end == std::string::npos ? end : end + 1);
  return line;
}

std::string HostFile(const std::string& bytes) {
  static const TemporaryFolder folder;
  const std::string path = folder.path() + "/input";
  simulated::WriteHostFile(path, bytes);
  return path;
}

Bench::Bench() {
  for (const char* path : {"C:\\QX\\Config\\Shares.csv", "C:\\core.msi"}) machine.files().put(path, "");
  run.services.log.logToFile(false);
  assistant::BehaveAs(run, {.silent = true, .verbose = true});
}

Bench& SharedBench() {
  constexpr int inputsPerBench = 5000;
  // Made at once: the tables that it needs to its end must outlive it.
  static auto bench = std::make_unique<Bench>();
  static int inputs = 0;
  if (++inputs % inputsPerBench == 0) {
    bench.reset();
    bench = std::make_unique<Bench>();
  }
  return *bench;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Fuzz(size == 0 ? std::string() : std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
