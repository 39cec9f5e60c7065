// The .reg reader, line by line and as the simulated registry's file, which is written anew when it is read.
#include <stdexcept>

#include "platform/simulated/host.h"
#include "platform/simulated/registry.h"
#include "platform/simulated/text.h"
#include "tests/fuzz/fuzz.h"

namespace {

void ReadLine(const std::string& line) {
  const simulated::RegLine read = simulated::ParseRegLine(line);
  if (read.kind != simulated::RegLine::Kind::Value) return;
  const simulated::RegLine again = simulated::ParseRegLine(simulated::ValueLine(read.value));
  Require(again.value.name == read.value.name, "a name is read as it is written");
  Require(again.value.type == read.value.type && again.value.data == read.value.data,
          "a value is read as it is written");
}

}  // namespace

void Fuzz(const std::string& input) {
  for (const std::string& line : simulated::Split(input, '\n')) ReadLine(line);
  const std::string file = HostFile(input);
  simulated::Journal journal;
  try {
    simulated::Registry{file, journal, false};
  } catch (const std::runtime_error& refused) {
    Require(std::string(refused.what()).rfind(file, 0) == 0, "a refusal names the file");
    return;
  }
  const std::string written = simulated::ReadHostFile(file);
  simulated::Registry{file, journal, false};
  Require(simulated::ReadHostFile(file) == written, "the registry's file stays as it was written");
}
