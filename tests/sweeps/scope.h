// How much of a sweep is made: a sample, or all of it.
#pragma once

#include <cstdint>

namespace sweeps {

struct Scope {
  int first = 1;           ///< operation of a life
  int every = 199;         ///< each so-many-th operation, for a sample
  std::uint32_t seed = 1;  ///< of the first random order
  int count = 3;           ///< how many random orders
};

/// As the command line has it.
extern Scope Chosen;

}  // namespace sweeps
