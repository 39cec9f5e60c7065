#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <iostream>

#include "tests/sweeps/scope.h"

namespace sweeps {
Scope Chosen;
}

namespace {

/// A program that hangs without an operation of the machine is ended by the host.
constexpr unsigned WholeSeconds = 4 * 3600;
constexpr unsigned SampleSeconds = 900;

}  // namespace

/// usage: sweeps [--whole] [--first N] [--every N] [--seed N] [--count N], beside the switches of GoogleTest
int main(int count, char** texts) {
  testing::InitGoogleTest(&count, texts);
  sweeps::Scope& scope = sweeps::Chosen;
  for (int i = 1; i < count; ++i) {
    const bool hasNumber = i + 1 < count;
    if (std::strcmp(texts[i], "--whole") == 0) {
      scope.every = 1;
      scope.count = 200;
    } else if (std::strcmp(texts[i], "--every") == 0 && hasNumber) {
      scope.every = std::atoi(texts[++i]);
    } else if (std::strcmp(texts[i], "--first") == 0 && hasNumber) {
      scope.first = std::atoi(texts[++i]);
    } else if (std::strcmp(texts[i], "--seed") == 0 && hasNumber) {
      scope.seed = static_cast<std::uint32_t>(std::atol(texts[++i]));
    } else if (std::strcmp(texts[i], "--count") == 0 && hasNumber) {
      scope.count = std::atoi(texts[++i]);
    } else {
      std::cerr << "usage: sweeps [--whole] [--first N] [--every N] [--seed N] [--count N]\n";
      return 2;
    }
  }
  alarm(scope.every == 1 ? WholeSeconds : SampleSeconds);
  return RUN_ALL_TESTS();
}
