// Conditions of the older notation: one text for all.
#include "exec/conditions.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  using namespace assistant;
  const InstalledProducts installed{{{"{11111111-2222-3333-4444-555555555555}", "Core", "1.2.3"}}, true};
  try {
    CheckLegacyConditionString({SharedBench().run, installed}, input);
  } catch (const Error& failure) {
    Require(!failure.text().empty(), "what does not hold says why");
  }
}
