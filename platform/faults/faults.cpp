#include "platform/faults/faults.h"

#include <exception>

namespace faults {

using platform::Status;

void Faults::fail(const std::string& operation, const std::string& targetPart, Status status, int times) {
  rules_.push_back({operation, targetPart, status, times});
}

Status Faults::match(const std::string& operation, const std::string& target) {
  for (Rule& rule : rules_) {
    if (rule.times <= 0 || rule.operation != operation || target.find(rule.targetPart) == std::string::npos) continue;
    --rule.times;
    return rule.status;
  }
  return Status::Ok;
}

void Faults::requirePower() {
  if (!on_ && std::uncaught_exceptions() == 0) throw PowerLoss{cut_};
}

Status Faults::change(const char* operation, const std::string& target) {
  if (cutsNext()) on_ = false;
  requirePower();
  if (watcher_) watcher_(operation, target);
  if (!on_) return Status::NotReady;
  history_.push_back(std::string(operation) + " " + target);
  const auto failing = failing_.find(operations());
  return failing == failing_.end() ? match(operation, target) : failing->second;
}

Status Faults::read(const char* operation, const std::string& target) {
  requirePower();
  if (watcher_) watcher_(operation, target);
  if (!on_) return Status::NotReady;
  ++reads_;
  if (notesReads_) readHistory_.push_back(std::string(operation) + " " + target);
  const auto failing = failingReads_.find(reads_);
  return failing == failingReads_.end() ? match(operation, target) : failing->second;
}

}  // namespace faults
