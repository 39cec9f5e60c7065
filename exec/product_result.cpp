#include "exec/product_result.h"

#include "base/registry.h"
#include "base/text.h"

namespace assistant {
namespace {

std::string WithLine(const std::string& lines, const std::string& line) {
  return lines.empty() ? line : lines + LineBreak + line;
}

/// The record's reasons hold those of the run before a restart as well, where they could be written.
const std::string& Longer(const std::string& recorded, const std::string& ofThisRun) {
  return recorded.size() >= ofThisRun.size() ? recorded : ofThisRun;
}

/// False where no product is known, on an uninstall that has removed nothing yet, and on that of a product that has no
/// record (any more): none is made for it.
bool HasRecord(const Run& run) {
  if (run.product.name.empty()) return false;
  return !run.isUninstall() || (run.state.removalBegan && run.record().exists());
}

void KeepInRun(RunState& state, bool succeeded, const std::string& reason) {
  state.failed = !succeeded;
  if (succeeded) state.failureReasons.clear();
  if (!succeeded && !reason.empty()) state.failureReasons = WithLine(state.failureReasons, reason);
}

void AddReason(const Procedure& here, const ProductRecord& record, const std::string& reason) {
  const std::string reasons = WithLine(record.read(Value::AbortReason), reason);
  // A longer text could not be read back, and would take the earlier reasons with it.
  if (reasons.size() <= modRegistry::LongestText) {
    record.write(Value::AbortReason, reasons);
  } else {
    here.warn("No room is left in Abort Reason for: " + reason);
  }
}

}  // namespace

void SetProductResult(Run& run, bool succeeded, const std::string& reason) {
  const Procedure here(run.services.log, "SetProductResult");
  here.guard([&] {
    KeepInRun(run.state, succeeded, reason);
    if (!HasRecord(run)) return;
    const ProductRecord record = run.record();
    record.writeNumber(Value::Succeeded, succeeded ? -1 : 0);
    if (succeeded) {
      record.write(Value::AbortReason, "");
      record.write(Value::RunProcessReturn, "");
    } else if (!reason.empty()) {
      AddReason(here, record, reason);
    }
  });
}

ProductResult GetProductResult(const Run& run) {
  const Procedure here(run.services.log, "GetProductResult");
  return here.guard([&]() -> ProductResult {
    if (!HasRecord(run)) return {!run.state.failed, run.state.failureReasons};
    const ProductRecord record = run.record();
    // What a refused write left in the record may be the result of an earlier run.
    if (run.state.failed) return {false, Longer(record.read(Value::AbortReason), run.state.failureReasons)};
    if (record.readNumber(Value::Succeeded) != 0) return {true, ""};
    return {false, record.read(Value::AbortReason)};
  });
}

void RequireRecords(const Run& run, const Procedure& here) {
  const Refusals& refusals = run.services.refusals;
  if (!refusals.any()) return;
  if (refusals.firstIsOfRead()) {
    throw here.failure("The run ends because what it installs cannot be read: " + refusals.first() +
                       ". Look at the medium, and start the program again.");
  }
  throw here.failure("The run ends because its records cannot be written: " + refusals.first() +
                     ". Administrator rights are needed: log on as an administrator and start the program again.");
}

}  // namespace assistant
