#include "exec/sequence.h"

#include <algorithm>

#include "base/error_handler.h"
#include "base/numbers.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"

namespace {

std::string RowText(const SequenceRow& row) {
  return "<br>" + row.component + " = " + NumberText(row.number);
}

double RecordedNumber(Run& run, const std::string& component) {
  return modRegistry::ReadNumber(run, ComponentKey(run.productName, component), Value::SequenceNumber);
}

std::string FolderOf(const Run& run, const std::string& path) {
  return Normalised(IsFullPath(path) ? path : Joined(run.packageRoot, path));
}

}  // namespace

namespace modQXInstallationMain {

void GetSequence(Run& run) {
  Guarded(run, "modQXInstallationMain.GetSequence", [&] {
    run.sequence.clear();
    for (const std::string& component : run.actions) {
      run.sequence.push_back({component, RecordedNumber(run, component)});
    }
    std::stable_sort(run.sequence.begin(), run.sequence.end(),
                     [](const SequenceRow& a, const SequenceRow& b) { return a.number < b.number; });
    std::string told = "Sequence is:";
    for (const SequenceRow& row : run.sequence) told += RowText(row);
    run.log.Log("GetSequence", 0, told + "<br>");
  });
}

}  // namespace modQXInstallationMain

namespace modMain {

NextComponent GetNextInstall(Run& run, double lastSequence) {
  return Guarded(run, "modMain.GetNextInstall", [&] {
    const auto next = std::find_if(run.sequence.begin(), run.sequence.end(),
                                   [&](const SequenceRow& row) { return row.number > lastSequence; });
    if (next == run.sequence.end()) return NextComponent::None;
    SelectComponent(run, next->component);
    run.component.sequenceNumber = next->number;
    run.log.Log("GetNextInstall", 0, "Next in sequence is " + run.component.name);
    return NextComponent::Found;
  });
}

}  // namespace modMain

std::vector<std::string> RecordedComponents(Run& run) {
  std::vector<std::string> components;
  for (const std::string& component : modRegistry::SubKeys(run, ProductKey(run))) {
    if (RecordedNumber(run, component) > 0) components.push_back(component);
  }
  return components;
}

void ListActions(Run& run) {
  run.actions = RecordedComponents(run);
}

double HighestSequenceNumber(Run& run) {
  double highest = 0;
  for (const std::string& component : RecordedComponents(run)) {
    highest = std::max(highest, RecordedNumber(run, component));
  }
  return highest;
}

void SelectComponent(Run& run, const std::string& component) {
  run.component = {};
  run.component.name = component;
  run.component.key = ComponentKey(run.productName, component);
  run.component.productCode = ComponentValue(run, Value::ProductCode);
  run.component.productVersion = ComponentValue(run, Value::ProductVersion);
  run.component.install = ComponentValue(run, Value::Install);
  run.component.path = FolderOf(run, ComponentValue(run, Value::Path));
  const std::string packageName = GivenComponentValue(run, Value::ProductName);
  run.component.displayName = packageName.empty() ? component : packageName;
}
