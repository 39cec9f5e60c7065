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

std::string FolderOf(const Run& run, const std::string& path) {
  return Normalised(IsFullPath(path) ? path : Joined(run.packageRoot, path));
}

}  // namespace

namespace modQXInstallationMain {

void GetSequence(Run& run) {
  Guarded(run, "modQXInstallationMain.GetSequence", [&] {
    run.sequence.clear();
    for (const std::string& component : run.actions) {
      const std::string key = ComponentKey(run.productName, component);
      run.sequence.push_back({component, modRegistry::ReadNumber(run, key, Value::SequenceNumber)});
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

void ListActions(Run& run) {
  run.actions.clear();
  for (const std::string& component : modRegistry::SubKeys(run, ProductKey(run))) {
    if (modRegistry::ReadNumber(run, ComponentKey(run.productName, component), Value::SequenceNumber) > 0) {
      run.actions.push_back(component);
    }
  }
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
