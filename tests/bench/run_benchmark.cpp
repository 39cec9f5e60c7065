// Whole rehearsed runs: what one more component costs.

#include <benchmark/benchmark.h>

#include <string>

#include "core/program.h"
#include "platform/simulated/workstation.h"
#include "tests/support/temporary_folder.h"

namespace {

constexpr const char* ApplicationIni =
    "[Product]\r\nName=Bench\r\nVersion=1.0\r\nPackageRoot=C:\\Media\r\nProductIni=PATH(product.ini)\r\n"
    "AbortOnFail=false\r\nForceUninstallReboot=False\r\nCopyOpRoot=C:\\Root\r\nCopyOpHold=C:\\Hold\r\n"
    "[Config]\r\nVerbose=false\r\nSilent=false\r\nRequestLogonDetails=false\r\n";

std::string Name(int number) {
  return "Component" + std::to_string(number);
}

/// A product of so many programs, one folder for them all.
void PutProduct(simulated::Workstation& machine, int components) {
  std::string product = "[Product]\r\nName=Bench\r\n[General]\r\nVersion=1.0\r\n[Actions]\r\n";
  std::string ini;
  for (int i = 1; i <= components; ++i) {
    product += Name(i) + "=Tools\\tools.ini\r\n";
    ini += "[" + Name(i) + "]\r\nInstall=setup.exe\r\nCommandLine=" + Name(i) +
           "\r\nUpgrade=False\r\nCopyOp=N/A\r\nMachineType=all machines\r\nCost=N/A\r\n";
  }
  machine.files().put("C:\\Media\\app.ini", ApplicationIni);
  machine.files().put("C:\\Media\\product.ini", product);
  machine.files().put("C:\\Media\\Tools\\tools.ini", ini);
  machine.files().put("C:\\Media\\Tools\\setup.exe", "");
  machine.processes().declare({.pattern = "setup.exe", .outcome = {}});
  machine.machine().setProgram("C:\\QX\\QX Installation Assistant.exe", "/s /is=C:\\Media\\app.ini");
}

void Run_Components(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    TemporaryFolder folder;
    simulated::Workstation machine(folder.path());
    PutProduct(machine, static_cast<int>(state.range(0)));
    state.ResumeTiming();
    const int exitCode = assistant::RunProgram(machine);
    if (exitCode != 0) state.SkipWithError("the run failed");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Run_Components)->Arg(50)->Arg(100)->Arg(250)->Arg(500)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
