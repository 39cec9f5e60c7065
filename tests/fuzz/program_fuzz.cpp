// Command lines as the simulated workstation runs them: msiexec, net, cmd /c, reg, and what nobody declared.
#include <stdexcept>

#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  simulated::Workstation& machine = SharedBench().machine;
  platform::StartedProcess started;
  try {
    if (machine.processes().start(input, "", platform::ShowWindow::Normal, started) != platform::Status::Ok) return;
    machine.processes().wait(started, 0xffffffff);
  } catch (const std::runtime_error& refused) {
    Require(*refused.what() != '\0', "a refusal says why");
  }
  machine.processes().close(started);
}
