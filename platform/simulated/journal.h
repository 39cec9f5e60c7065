// What happened on the machine, in order.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace simulated {

struct Journal {
  /// One readable line for every effect: what ran, what was written, copied, deleted, asked, shown, restarted.
  std::vector<std::string> effects;
  /// When each of them happened, as `moment` told it.
  std::vector<std::int64_t> moments;
  /// Command lines of programs that nobody declared.
  std::vector<std::string> undeclared;
  /// What the machine was asked and had no script for: message boxes, dialogs, waiting for a person.
  std::vector<std::string> unscripted;

  std::function<std::int64_t()> moment;  ///< the machine's time in milliseconds; none: 0

  void forgetEffects() {
    effects.clear();
    moments.clear();
  }

  /// A line break inside an effect becomes " | ".
  void record(std::string effect) {
    for (std::size_t at = effect.find('\n'); at != std::string::npos; at = effect.find('\n', at)) {
      const std::size_t start = at > 0 && effect[at - 1] == '\r' ? at - 1 : at;
      effect.replace(start, at + 1 - start, " | ");
    }
    effects.push_back(std::move(effect));
    moments.push_back(moment ? moment() : 0);
  }
};

}  // namespace simulated
