#include "core/work.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/earlier_record.h"
#include "base/procedure.h"
#include "base/text.h"
#include "core/display.h"
#include "core/end_wanted.h"
#include "core/initialise.h"
#include "core/install_loop.h"
#include "core/run_stops.h"
#include "env/add_remove_programs.h"
#include "env/forced_removal.h"
#include "env/multi_disk.h"
#include "env/shares.h"
#include "env/uninstall.h"
#include "exec/product_result.h"

namespace assistant {
namespace {

void Uninstall(Run& run, const Procedure& here) {
  StartUninstall(run);
  EndIfWanted(run.services);
  // What failed stays recorded, so that the uninstall can be run again.
  if (run.state.failed) return;
  BeginRemoval(run, here);
  const CleanUp cleanUp = CleanUpUninstallFiles(run);
  if (cleanUp.failure) SetProductResult(run, false, *cleanUp.failure);
  run.state.programToRemove = cleanUp.programToRemove;
}

/// Discs that lead to each other in a circle would be asked for without end.
bool WasInstalled(const std::vector<std::string>& discs, const std::string& volume) {
  return std::any_of(discs.begin(), discs.end(),
                     [&](const std::string& disc) { return EqualIgnoringCase(disc, volume); });
}

std::string CircleText(const Product& product) {
  return "The disk labelled " + product.nextVolume +
         " was installed already, and a disk behind it names it as the next one. Correct NextVolumeName in section "
         "[Product] of " +
         product.inis.product + " or " + product.inis.application + ".";
}

/// The drive of the product's next disc. Where there is none, that is told and the run goes no further.
char FindNextDisc(Run& run, const Procedure& here, const std::vector<std::string>& discs) {
  if (WasInstalled(discs, run.product.nextVolume)) {
    const Error circle = here.failure(CircleText(run.product));
    here.plain().tell(circle);
    throw RunStops{RunStops::How::CannotGoOn, circle.text()};
  }
  const auto letter = modCDFunctions::PromptForDisk(run);
  if (letter) return *letter;
  const Procedure dialog(run.services.log, "Change Disk Dialog");
  const Error cancelled = dialog.failure("User cancelled disk change prompt");
  dialog.tell(cancelled);
  run.state.cancelled = true;
  throw RunStops{RunStops::How::CannotGoOn, cancelled.text()};
}

void PrepareFolders(const Run& run) {
  CreateFolders(run);
  CreateShares(run);
  EndIfWanted(run.services);
}

/// Goes over to the product's next disc. `discs` are those that it has been asked for before.
void ChangeDisc(Run& run, const Procedure& here, const std::vector<std::string>& discs) {
  const char letter = FindNextDisc(run, here, discs);
  modCDFunctions::UseDrive(run.services.fso, run.product, letter);
  InitialiseNextDisc(run);
  ShowWork(run);
  PrepareFolders(run);
}

/// Once forced removals are done, the discs are installed one after another. A disc whose work was cut short is the
/// last.
void Install(Run& run, const Procedure& here) {
  const bool resumed = run.state.kind == RunKind::Resumed;
  const bool forcedBefore = run.record().isTrue(Value::FUDone);
  if (!resumed && !forcedBefore) {
    const ForcedEnd end = ForceUninstall(run);
    EndIfWanted(run.services);
    if (end == ForcedEnd::RestartWanted) throw RunStops{RunStops::How::ForRestart};
  }
  ForceDelete(run);
  InstallProgress progress{.positionIsBeforeRestart = resumed && !forcedBefore};
  std::vector<std::string> discs;
  while (StartInstall(run, progress) == LoopEnd::NoneLeft && !run.product.nextVolume.empty()) {
    const std::string volume = run.product.nextVolume;
    ChangeDisc(run, here, discs);
    discs.push_back(volume);
  }
}

}  // namespace

void DoContinue(Run& run) {
  // A failure bears the module's name as well; a circle of discs has always borne the plain one.
  const Procedure here(run.services.log, "DoContinue", "modMain.DoContinue");
  run.state.phase = Phase::Working;
  BeginWork(run);
  const auto failure = here.failureOf([&] {
    ShowWork(run);
    if (run.state.kind == RunKind::Fresh) {
      ForgetEarlierRecord(run.services, here, run.product.name);
      PrepareFolders(run);
    }
    run.state.kind == RunKind::Uninstall ? Uninstall(run, here) : Install(run, here);
  });
  if (failure) SetProductResult(run, false, *failure);
}

}  // namespace assistant
