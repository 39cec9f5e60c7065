// Comparing versions: one a line.
#include "exec/versions.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  std::string b = input;
  const std::string a = TakeLine(b);
  assistant::clsAppLog& log = SharedBench().run.services.log;
  const bool newer = IsNewerVersion(log, a, b);
  Require(!newer || !IsNewerVersion(log, b, a), "no two versions are newer than each other");
  Require(!IsNewerVersion(log, a, a), "no version is newer than itself");
}
