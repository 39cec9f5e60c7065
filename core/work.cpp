#include "core/work.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

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
#include "env/reboot.h"
#include "env/shares.h"
#include "env/uninstall.h"
#include "exec/product_result.h"

namespace assistant {
namespace {

void Uninstall(Run& run) {
  StartUninstall(run);
  EndIfWanted(run.services);
  // What failed stays recorded, so that the uninstall can be run again.
  if (run.state.failed) return;
  const CleanUp cleanUp = CleanUpUninstallFiles(run);
  if (cleanUp.failure) SetProductResult(run, false, *cleanUp.failure);
  run.state.programToRemove = cleanUp.programToRemove;
  ForgetResume(run.services, run.record(), run.product.name);
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

/// The drive of the product's next disc; nothing when there is none, which is told and recorded.
std::optional<char> FindNextDisc(Run& run, std::vector<std::string>& discs) {
  const std::string volume = run.product.nextVolume;
  if (WasInstalled(discs, volume)) {
    const Procedure here(run.services.log, "DoContinue");
    here.tell(here.failure(CircleText(run.product)));
    SetProductResult(run, false, CircleText(run.product));
    return std::nullopt;
  }
  discs.push_back(volume);
  const auto letter = modCDFunctions::PromptForDisk(run);
  if (letter) return letter;
  const Procedure here(run.services.log, "Change Disk Dialog");
  const Error cancelled = here.failure("User cancelled disk change prompt");
  here.tell(cancelled);
  run.state.cancelled = true;
  SetProductResult(run, false, cancelled.text());
  return std::nullopt;
}

void PrepareFolders(const Run& run) {
  CreateFolders(run);
  CreateShares(run);
}

/// Goes over to the product's next disc; false when that could not be found.
bool ChangeDisc(Run& run, std::vector<std::string>& discs) {
  const auto letter = FindNextDisc(run, discs);
  if (!letter) return false;
  modCDFunctions::UseDrive(run.services.fso, run.product, *letter);
  InitialiseNextDisc(run);
  ShowWork(run);
  PrepareFolders(run);
  return true;
}

/// Once forced removals are done, the discs are installed one after another. A disc whose work was cut short is the
/// last.
void Install(Run& run) {
  const bool resumed = run.state.kind == RunKind::Resumed;
  const bool forcedBefore = run.record().isTrue(Value::FUDone);
  if (!resumed && !forcedBefore && ForceUninstall(run) == ForcedEnd::RestartWanted) {
    throw RunStops{RunStops::How::ForRestart};
  }
  ForceDelete(run);
  Progress progress{.positionIsBeforeRestart = resumed && !forcedBefore};
  std::vector<std::string> discs;
  while (StartInstall(run, progress) == LoopEnd::NoneLeft && !run.product.nextVolume.empty()) {
    if (!ChangeDisc(run, discs)) return;
  }
}

}  // namespace

void DoContinue(Run& run) {
  const Procedure here(run.services.log, "modMain.DoContinue");
  run.state.phase = Phase::Working;
  const auto failure = here.failureOf([&] {
    ShowWork(run);
    if (run.state.kind == RunKind::Fresh) PrepareFolders(run);
    run.state.kind == RunKind::Uninstall ? Uninstall(run) : Install(run);
  });
  if (failure) SetProductResult(run, false, *failure);
}

}  // namespace assistant
