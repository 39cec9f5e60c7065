// A machine file. Folders of the host could be anywhere, so inputs that may name one are passed over.
#include <stdexcept>

#include "platform/simulated/declaration.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  if (input.find('/') != std::string::npos || input.find("..") != std::string::npos) return;
  const TemporaryFolder folder;
  const std::string state = folder.path() + "/machine";
  const std::string file = HostFile(input);
  bool accepted = false;
  {
    simulated::Workstation machine(state);
    try {
      simulated::LoadMachine(file, machine);
      accepted = true;
    } catch (const std::runtime_error& refused) {
      Require(std::string(refused.what()).rfind(file, 0) == 0, "a refusal names the file");
    }
    if (accepted) machine.clock().now();
  }
  // What was declared must be found again by the next start.
  if (accepted) simulated::Workstation{state};
}
