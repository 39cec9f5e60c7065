// Writes of a run's records, and reads of what it installs, that the machine refused.
#pragma once

#include <string>

namespace assistant {

/// A run with any of them has not succeeded, whatever else became of it: what later steps, a resumed run or an
/// uninstall rely on is not there.
class Refusals {
 public:
  void add(const std::string& what) {
    if (first_.empty()) first_ = what;
  }
  /// The same for an ini file: what stands in for its text is not what it says.
  void addUnread(const std::string& what) {
    if (first_.empty()) isOfRead_ = true;
    add(what);
  }
  bool any() const { return !first_.empty(); }
  /// The first of them, as the log tells it; "" for none.
  const std::string& first() const { return first_; }
  bool firstIsOfRead() const { return isOfRead_; }

 private:
  std::string first_;
  bool isOfRead_ = false;
};

}  // namespace assistant
