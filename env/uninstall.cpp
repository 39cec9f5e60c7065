#include "env/uninstall.h"

#include <algorithm>
#include <string>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/numbers.h"
#include "base/paths.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "env/add_remove_programs.h"
#include "env/install_type.h"
#include "env/uninstall_component.h"
#include "exec/component_command.h"
#include "exec/copy_operations.h"
#include "exec/guarded_run.h"
#include "exec/outcome.h"
#include "exec/sequence.h"

namespace {

constexpr const char* Source = "StartUninstall";

/// Makes the last component below the position the current one and returns its sequence number; 0 when there is none.
double GetNextUninstall(Run& run, double position) {
  const auto next = std::find_if(run.sequence.rbegin(), run.sequence.rend(),
                                 [position](const SequenceRow& row) { return row.number < position; });
  if (next == run.sequence.rend() || next->number <= 0) return 0;
  SelectComponent(run, next->component);
  if (run.verbose) run.log.Log("GetNextUninstall", 0, "Next in sequence is " + run.component.install);
  run.window.Component(run.component.name + " :" + LineBreak + run.component.install);
  return next->number;
}

void DeleteCopiedFolder(Run& run, const std::string& folder) {
  run.log.Log(Source, 0, "Deleting... " + folder);
  if (!IsBelowRoot(folder)) {
    run.log.Log(Source, 0, folder + " is not a standard path specification - skipping...", false, EntryType::Warning);
  } else if (!run.fso.FolderExists(folder)) {
    run.log.Log(Source, 0, "Folder " + folder + " does not exist - skipping delete...");
  } else {
    run.fso.DeleteFolderForced(folder);
  }
}

/// One that cannot be deleted does not keep the others.
RemovalEnd DeleteCopiedFolders(Run& run, const CopyTargets& targets) {
  RemovalEnd end = RemovalEnd::Removed;
  for (const std::string& target : targets.folders) {
    try {
      DeleteCopiedFolder(run, CopyDestination(run, target, targets.appendPath));
    } catch (const Error& failure) {
      LogFailure(run, Source, failure);
      end = RemovalEnd::Failed;
    }
  }
  return end;
}

RemovalEnd RemoveCopies(Run& run) {
  try {
    AnnounceUninstall(run);
    if (IsKeptForOthers(run, run.component.name, false)) return RemovalEnd::KeptForOthers;
    CopyTargets targets;
    ReadRegCopyOps(run, targets, run.component.key);
    UseDefaultTarget(run, targets, "CopyOpRoot");
    if (targets.appendPath && ComponentValue(run, Value::Path).empty()) {
      run.log.Log(Source, 0, "Folder " + targets.first() + " may hold other components' copies - skipping delete...",
                  false, EntryType::Warning);
      return RemovalEnd::Removed;
    }
    return DeleteCopiedFolders(run, targets);
  } catch (const Error& failure) {
    LogFailure(run, Source, failure);
    return RemovalEnd::Failed;
  }
}

/// Programs may remove themselves with what they remove, so that none is run again by an uninstall that goes on after
/// a failure of another component.
RemovalEnd RemoveByCommand(Run& run) {
  if (IsTrue(ComponentValue(run, Value::Uninstalled))) {
    run.log.Log(Source, 0, "Component " + run.component.name + " was removed by an earlier uninstall - skipping");
    return RemovalEnd::NotInstalled;
  }
  return modQXInstallationMain::ExecuteUninstall(run, run.component.name, false, false);
}

/// A component that was only copied is looked for before its file's type.
RemovalEnd Remove(Run& run) {
  if (CopyCode(run) == '1') return RemoveCopies(run);
  if (RunTypeOf(run.component.install) != RunType::Package) return RemoveByCommand(run);
  return modQXInstallationMain::ExecuteUninstall(run, run.component.name, true, false);
}

void RemoveCurrent(Run& run) {
  run.log.Log(Source, 0, "Next component is " + run.component.name + " v." + run.component.productVersion);
  if (!IsTrue(ComponentValue(run, "RunOnUninstall"))) {
    run.log.Log(Source, 0,
                "Component " + run.component.name + " is not set to run as part of the uninstall sequence - skipping");
    return;
  }
  const RemovalEnd end = Remove(run);
  const char* result = end == RemovalEnd::Failed || end == RemovalEnd::NoCommand ? "Fail" : "Pass";
  modRegistry::RegWrite(run, run.component.key, Value::ProcessReturn, result);
  modRegistry::RegWrite(run, ProductKey(run), Value::ProcessReturn, result);
  // What nothing says how to remove must not keep the rest from being forgotten.
  if (end == RemovalEnd::Failed) SetProductResult(run, false, "Uninstallation of " + run.component.name + " failed");
}

/// The bar follows the components that lie behind.
void ShowProgress(Run& run, double position) {
  const auto left = std::count_if(run.sequence.begin(), run.sequence.end(),
                                  [position](const SequenceRow& row) { return row.number < position; });
  run.window.ProgressBar(100 - static_cast<int>(left * 100 / static_cast<std::ptrdiff_t>(run.sequence.size())));
}

void RemoveAll(Run& run) {
  double position = modRegistry::ReadNumber(run, ProductKey(run), Value::LastSequence);
  if (run.verbose) run.log.Log(Source, 0, "LastSequence was " + NumberText(position));
  if (position <= 0) position = run.sequence.back().number + 1;
  ShowProgress(run, position);
  while (!run.window.EndWanted() && (position = GetNextUninstall(run, position)) > 0) {
    RemoveCurrent(run);
    modRegistry::RegWrite(run, ProductKey(run), Value::LastSequence, NumberText(position));
    ShowProgress(run, position);
  }
}

void ReportNoComponents(Run& run) {
  const Error error = modErrorBase::MakeError(6095, {ProductKey(run)}, Source);
  LogFailure(run, Source, error);
  SetProductResult(run, false, error.text());
}

}  // namespace

void StartUninstall(Run& run) {
  GuardedRun(run, Source, [&] {
    modQXInstallationMain::GetSequence(run);
    if (run.sequence.empty()) {
      if (!IsCleanUpUnfinished(run)) ReportNoComponents(run);
      return;
    }
    if (run.verbose) run.fso.CreateFolder(run.logFolders.msiLogs);
    RemoveAll(run);
    run.window.StatusLine("Finish");
  });
}
