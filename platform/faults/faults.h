// Which operations of a machine go wrong. Used through faults::Platform.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/status.h"

namespace faults {

/// Thrown by the operation before which the power went. Not an std::exception, so that no error handler swallows it.
struct PowerLoss {
  int operation;  ///< number of the operation that did not happen any more
};

/// Operations are named as the ports name them, "registry.setValue", "files.write", "processes.start". Those that
/// change something are counted from 1, and so, for themselves, are those that only read.
class Faults {
 public:
  /// The n-th counted operation returns this status and does nothing.
  void failAt(int number, platform::Status status) { failing_[number] = status; }
  /// The n-th reading operation returns this status and does nothing; they are counted for themselves.
  void failReadAt(int number, platform::Status status) { failingReads_[number] = status; }
  /// Operations of that name on a target that holds this text (any when empty, letter case counts) return the status
  /// and do nothing, so many times.
  void fail(const std::string& operation, const std::string& targetPart, platform::Status status, int times = 1000000);
  /// The power goes before the n-th counted operation; a file write loses its second half.
  void cutPowerBefore(int number) { cut_ = number; }

  /// Calls this before every operation, reading ones included.
  void watch(std::function<void(const std::string& operation, const std::string& target)> watcher) {
    watcher_ = std::move(watcher);
  }

  /// How many counted operations there have been, and what they were: "registry.setValue Products\Office\Version".
  int operations() const { return static_cast<int>(history_.size()); }
  const std::vector<std::string>& history() const { return history_; }

  /// The same of the reading ones, from here on.
  void noteReads() { notesReads_ = true; }
  const std::vector<std::string>& readHistory() const { return readHistory_; }

  // For the decorators.

  /// Counts an operation. Ok: go on; otherwise return this. Throws PowerLoss when the power goes or has gone; while an
  /// exception is on its way already, NotReady.
  platform::Status change(const char* operation, const std::string& target);
  /// The same for an operation that only reads.
  platform::Status read(const char* operation, const std::string& target);
  /// True when the next counted operation is the one that the power does not survive.
  bool cutsNext() const { return on_ && operations() + 1 == cut_; }
  /// Throws PowerLoss when the power has gone.
  void requirePower();

 private:
  struct Rule {
    std::string operation;
    std::string targetPart;
    platform::Status status;
    int times;
  };

  platform::Status match(const std::string& operation, const std::string& target);

  std::map<int, platform::Status> failing_;
  std::map<int, platform::Status> failingReads_;
  std::vector<Rule> rules_;
  std::vector<std::string> history_;
  std::vector<std::string> readHistory_;
  int reads_ = 0;
  bool notesReads_ = false;
  std::function<void(const std::string&, const std::string&)> watcher_;
  int cut_ = 0;
  bool on_ = true;
};

}  // namespace faults
