// The product's record as an exported .reg file.
#include <stdexcept>

#include "app/qxia/logs/record.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  using namespace qxia::logs;
  try {
    for (const RecordedProduct& product : ReadRecords(HostFile(input))) {
      LoggedRun run = RunOf(product);
      Require(run.components.size() <= product.components.size(), "a run has the record's components");
      TakeOver(product, run);
    }
  } catch (const std::runtime_error& refused) {
    Require(*refused.what() != '\0', "a refusal says why");
  }
}
