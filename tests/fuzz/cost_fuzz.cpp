// A component's cost, and numbers that people wrote.
#include <cstdlib>

#include "base/error.h"
#include "base/numbers.h"
#include "exec/disk_space.h"
#include "tests/fuzz/fuzz.h"

void Fuzz(const std::string& input) {
  using namespace assistant;
  Component component;
  component.name = "Core";
  component.cost = input;
  Require(CheckedCosts(input).size() <= input.size() + 1, "a need is a field");
  Bench& bench = SharedBench();
  bench.run.facts.drives = {{'C', 4e9}};
  CheckDiskSpace(bench.run, component);
  const double number = NumericValue(input);
  const auto whole = WholeNumericValue(input);
  Require(!whole || *whole == number || number != number, "a number is the same read in either way");
  const auto integer = WholeInteger(input);
  Require(!integer || *integer == RoundedToEven(number), "an integer is the number, rounded");
  NumberText(number);
  Thousands(number);
}
