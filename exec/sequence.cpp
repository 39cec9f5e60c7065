#include "exec/sequence.h"

#include <algorithm>

#include "base/numbers.h"
#include "base/procedure.h"
#include "base/registry.h"

namespace assistant {
namespace {

double RecordedNumber(const Run& run, const std::string& component) {
  return RecordedSequenceNumber(run.machine.registry(), run.product.name, component);
}

}  // namespace

std::vector<std::string> RecordedComponents(const Run& run) {
  std::vector<std::string> components;
  for (const std::string& component : modRegistry::SubKeys(run.machine.registry(), run.record().key())) {
    if (RecordedNumber(run, component) > 0) components.push_back(component);
  }
  return components;
}

double HighestSequenceNumber(const Run& run) {
  double highest = 0;
  for (const std::string& component : RecordedComponents(run)) {
    highest = std::max(highest, RecordedNumber(run, component));
  }
  return highest;
}

Sequence GetSequence(const Run& run, const std::vector<std::string>& components) {
  // Failures bear the module's name as well, as they always have.
  const Procedure here(run.services.log, "GetSequence", "modQXInstallationMain.GetSequence");
  return here.guard([&] {
    Sequence sequence;
    sequence.reserve(components.size());
    for (const std::string& component : components) sequence.push_back({component, RecordedNumber(run, component)});
    std::stable_sort(sequence.begin(), sequence.end(),
                     [](const SequenceRow& a, const SequenceRow& b) { return a.number < b.number; });
    std::string told = "Sequence is:";
    for (const SequenceRow& row : sequence) {
      told.append("<br>").append(row.component).append(" = ").append(NumberText(row.number));
    }
    here.action(told + "<br>");
    return sequence;
  });
}

NextInstall GetNextInstall(const Run& run, const Sequence& sequence, double lastSequence) {
  // Failures bear the module's name as well, as they always have.
  const Procedure here(run.services.log, "GetNextInstall", "modMain.GetNextInstall");
  return here.guard([&]() -> NextInstall {
    const auto next = std::find_if(sequence.begin(), sequence.end(),
                                   [&](const SequenceRow& row) { return row.number > lastSequence; });
    if (next == sequence.end()) return {NextInstall::Is::None, {}};
    NextInstall found{NextInstall::Is::Found, SelectComponent(run, next->component)};
    found.component.sequenceNumber = next->number;
    here.action("Next in sequence is " + found.component.name);
    return found;
  });
}

Component SelectComponent(const Run& run, const std::string& component) {
  return ReadRecord(run.machine.registry(), run.product.name, component, run.product.packageRoot);
}

}  // namespace assistant
