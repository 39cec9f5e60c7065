#include "env/uninstall.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "base/component.h"
#include "base/earlier_record.h"
#include "base/log_setup.h"
#include "base/numbers.h"
#include "base/paths.h"
#include "base/procedure.h"
#include "base/text.h"
#include "env/add_remove_programs.h"
#include "env/install_type.h"
#include "env/reboot.h"
#include "env/uninstall_component.h"
#include "exec/copy_targets.h"
#include "exec/file_kinds.h"
#include "exec/product_result.h"
#include "exec/sequence.h"

namespace assistant {
namespace {

/// The last component below the position; nothing when there is none.
std::optional<Component> GetNextUninstall(const Run& run, const Sequence& sequence, double position) {
  const Procedure here(run.services.log, "GetNextUninstall");
  const auto next = std::find_if(sequence.rbegin(), sequence.rend(),
                                 [position](const SequenceRow& row) { return row.number < position; });
  if (next == sequence.rend() || next->number <= 0) return std::nullopt;
  Component component = SelectComponent(run, next->component);
  component.sequenceNumber = next->number;
  here.detail("Next in sequence is " + component.install);
  run.services.window.component(component.name + " :" + LineBreak + component.install);
  return component;
}

/// What is to be done about a component.
enum class Way {
  Skip,           ///< it does not belong to the uninstall
  DeleteCopies,   ///< it was only copied
  RemovedBefore,  ///< an earlier uninstall removed it
  LeftBefore,     ///< an earlier uninstall left it to another product
  Uninstall,
};

/// A component that was only copied is looked for before its file's type. Programs may remove themselves with what they
/// remove, so that none is run again by an uninstall that goes on after a failure of another component.
Way WayToRemove(platform::RegistryReader& registry, const Component& component) {
  if (!IsTrue(component.runOnUninstall)) return Way::Skip;
  const std::string told = ReadNow(registry, component, ComponentValue::Uninstalled);
  if (told == LeftToOthers) return Way::LeftBefore;
  if (CopyCodeOf(component) == CopyCode::IsTheInstallation) return Way::DeleteCopies;
  if (RemovalOf(component.install) == RemovedBy::Msiexec) return Way::Uninstall;
  return IsTrue(told) ? Way::RemovedBefore : Way::Uninstall;
}

void DeleteCopiedFolder(clsFso& fso, const Procedure& here, const std::string& folder) {
  here.action("Deleting... " + folder);
  if (!IsBelowRoot(folder)) {
    here.warn(folder + " is not a standard path specification - skipping...");
  } else if (fso.folderIsGone(folder)) {
    here.action("Folder " + folder + " does not exist - skipping delete...");
  } else {
    fso.deleteFolderForced(folder);
  }
}

/// One that cannot be deleted does not keep the others.
RemovalEnd DeleteCopiedFolders(const Run& run, const Procedure& here, const Component& component,
                               const CopyTargets& targets) {
  RemovalEnd end = RemovalEnd::Removed;
  for (const std::string& target : targets.folders) {
    const std::string folder = CopyDestination(component, target, targets.appendPath);
    if (here.failureOf([&] { DeleteCopiedFolder(run.services.fso, here, folder); })) end = RemovalEnd::Failed;
  }
  return end;
}

RemovalEnd RemoveCopies(const Run& run, const Procedure& here, const Component& component) {
  return here.guard([&] {
    AnnounceUninstall(run.record());
    if (IsKeptForOthers(run.services, here, component, component.name)) return RemovalEnd::KeptForOthers;
    const CopyTargets targets =
        WithDefaultTarget(run.record(), ReadRegCopyOps(run.services, component), Value::CopyOpRoot);
    if (targets.appendPath && component.path.empty()) {
      here.warn("Folder " + targets.first() + " may hold other components' copies - skipping delete...");
      return RemovalEnd::Removed;
    }
    return DeleteCopiedFolders(run, here, component, targets);
  });
}

/// Nothing for a component that does not belong to the uninstall.
std::optional<RemovalEnd> Remove(const Run& run, const Procedure& here, const Component& component) {
  switch (WayToRemove(run.services.machine.registry(), component)) {
    case Way::Skip:
      here.action("Component " + component.name + " is not set to run as part of the uninstall sequence - skipping");
      return std::nullopt;
    case Way::DeleteCopies:
      return RemoveCopies(run, here, component);
    case Way::RemovedBefore:
      here.action("Component " + component.name + " was removed by an earlier uninstall - skipping");
      return RemovalEnd::NotInstalled;
    case Way::LeftBefore:
      here.action("Component " + component.name + " was left to another product by an earlier uninstall - skipping");
      return RemovalEnd::KeptForOthers;
    case Way::Uninstall:
      break;
  }
  return ExecuteUninstall(run, component, component.name);
}

/// The component is this product's no longer, whatever becomes of the rest of the uninstall.
void LetGo(const Services& services, const Component& component, RemovalEnd end) {
  if (end == RemovalEnd::KeptForOthers) WriteNow(services, component, ComponentValue::Uninstalled, LeftToOthers);
  if (end == RemovalEnd::Removed || end == RemovalEnd::NotInstalled) {
    WriteNow(services, component, ComponentValue::Uninstalled, TrueOrFalse(true));
  }
}

void Record(Run& run, const Component& component, RemovalEnd end) {
  LetGo(run.services, component, end);
  const char* result = end == RemovalEnd::Failed || end == RemovalEnd::NoCommand ? "Fail" : "Pass";
  WriteNow(run.services, component, ComponentValue::ProcessReturn, result);
  run.record().write(Value::ProductProcessReturn, result);
  // What nothing says how to remove must not keep the rest from being forgotten.
  if (end == RemovalEnd::Failed) SetProductResult(run, false, "Uninstallation of " + component.name + " failed");
}

/// The bar follows the components that lie behind.
void ShowProgress(frmMain& window, const Sequence& sequence, double position) {
  const auto left = std::count_if(sequence.begin(), sequence.end(),
                                  [position](const SequenceRow& row) { return row.number < position; });
  window.progressBar(100 - static_cast<int>(left * 100 / static_cast<std::ptrdiff_t>(sequence.size())));
}

void RemoveAll(Run& run, const Procedure& here, const Sequence& sequence) {
  frmMain& window = run.services.window;
  double position = run.record().readNumber(Value::LastSequence);
  here.detail("LastSequence was " + NumberText(position));
  if (position <= 0) position = sequence.back().number + 1;
  ShowProgress(window, sequence, position);
  while (!window.endWanted()) {
    const std::optional<Component> next = GetNextUninstall(run, sequence, position);
    if (!next) return;
    position = next->sequenceNumber;
    here.action("Next component is " + next->name + " v." + next->productVersion);
    if (const auto end = Remove(run, here, *next)) Record(run, *next, *end);
    run.record().write(Value::LastSequence, NumberText(position));
    ShowProgress(window, sequence, position);
  }
}

void ReportNoComponents(Run& run, const Procedure& here) {
  const Error none = here.failure(6095, {run.record().key()});
  here.tell(none);
  SetProductResult(run, false, none.text());
}

}  // namespace

void BeginRemoval(Run& run, const Procedure& here) {
  if (std::exchange(run.state.removalBegan, true)) return;
  SetProductResult(run, true, "");
  const ProductRecord record = run.record();
  if (record.exists()) record.write(Value::LastSequence, "0");
  ForgetResume(run.services, record, run.product.name);
  RequireRecords(run, here);
}

void StartUninstall(Run& run) {
  const Procedure here(run.services.log, "StartUninstall");
  const std::optional<std::string> failure = here.failureOf([&] {
    if (run.services.window.endWanted()) return;
    if (PutBackEarlierRecord(run.services, here, run.product.name) == Recorded::Nothing) return BeginRemoval(run, here);
    const Sequence sequence = GetSequence(run, RecordedComponents(run));
    if (sequence.empty()) {
      if (!IsCleanUpUnfinished(run)) ReportNoComponents(run, here);
      return;
    }
    if (run.services.log.isVerbose()) MakeMsiLogFolder(run.services, here, run.logFolders);
    if (run.services.window.endWanted()) return;
    BeginRemoval(run, here);
    RemoveAll(run, here, sequence);
    run.services.window.statusLine("Finish");
  });
  if (failure) SetProductResult(run, false, *failure);
}

}  // namespace assistant
