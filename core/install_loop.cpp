#include "core/install_loop.h"

#include <cmath>
#include <string>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/numbers.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/closedown.h"
#include "core/end_of_run.h"
#include "core/initialise.h"
#include "core/install_component.h"
#include "env/add_remove_programs.h"
#include "env/forced_removal.h"
#include "env/multi_disk.h"
#include "env/reboot.h"
#include "env/shares.h"
#include "env/uninstall.h"
#include "exec/msi_queries.h"
#include "exec/sequence.h"

namespace {

constexpr const char* Source = "StartInstall";
constexpr double SequenceStep = 100;

std::string Told(double number) {
  const bool whole = number == std::floor(number);
  return whole ? std::to_string(static_cast<long long>(number)) : std::to_string(number);
}

/// The first component of a resumed run sets the loop's position from the sequence number that was done last. The
/// logged position is one less than the one taken. False when the number lies beyond the table.
bool ResetPosition(Run& run, std::int32_t lastSequence, int& position) {
  run.resumePending = false;
  if (lastSequence < SequenceStep) {
    position = 1;
    return true;
  }
  const double done = lastSequence / SequenceStep;
  if (done > static_cast<double>(run.sequence.size())) {
    run.log.Log(Source, 0, "Cannot Determine the Current Sequence");
    return false;
  }
  run.log.Log(Source, 0,
              "Recent reboot detected.  Re-setting current sequence number, from " + std::to_string(position) + " to " +
                  Told(done));
  position = static_cast<int>(RoundedToEven(done + 1));
  return true;
}

double CurrentNumber(const Run& run) {
  for (const SequenceRow& row : run.sequence) {
    if (row.component == run.component.name) return row.number;
  }
  return 0;
}

/// Acts on what the component asked for; an immediate restart does not return.
void ActOnRebootRequest(Run& run) {
  const std::string request = modRegistry::ReadOrEmpty(run, InstallationKey, Value::Reboot);
  run.log.Log(Source, 0, "Reboot status is " + request);
  if (EqualIgnoringCase(request, "immediate")) RestartAndResume(run);
  if (EqualIgnoringCase(request, "deferred")) {
    run.deferredReboot = true;
  } else {
    run.log.Log(Source, 0, "No reboot required");
  }
}

void Finish(Run& run) {
  run.window.StatusLine("Finish");
  run.window.ProgressBar(100);
  if (run.verbose) LogInstalledMSIs(run);
  SetLocalIAForUninstall(run);
  if (run.deferredReboot) RestartAndResume(run);
}

void ShowProgress(Run& run, int position) {
  const std::size_t rows = run.actions.size();
  if (rows != 0) run.window.ProgressBar((position - 1) * 100 / static_cast<int>(rows));
  run.window.StatusLine("Proceeding with next component");
}

bool FindNextComponent(Run& run, double lastSequence) {
  modQXInstallationMain::GetSequence(run);
  run.log.Log(Source, 0, "Last Sequence was " + Told(lastSequence));
  if (!modMain::GetNextInstall(run, lastSequence)) return false;
  run.log.Log(Source, 0, "Next component is " + run.component.name + " v." + run.component.productVersion);
  run.window.Component(run.component.name);
  return true;
}

/// One round of the loop; false when the loop is over.
bool InstallNext(Run& run, int& position) {
  ShowProgress(run, position);
  const double lastSequence = modRegistry::ReadNumber(run, ProductKey(run), Value::LastSequence);
  if (!FindNextComponent(run, lastSequence)) {
    Finish(run);
    return false;
  }
  ListInstalledProducts(run);
  if (InstallComponent(run) == ComponentEnd::Aborted) return false;
  if (run.resumePending && !ResetPosition(run, static_cast<std::int32_t>(lastSequence), position)) return false;
  run.log.Log(Source, 0, "Writing last sequence to register");
  modRegistry::RegWrite(run, ProductKey(run), Value::LastSequence, Told(CurrentNumber(run)));
  ActOnRebootRequest(run);
  ++position;
  return true;
}

void Uninstall(Run& run) {
  StartUninstall(run);
  // What failed stays recorded, so that the uninstall can be run again.
  if (!run.failed) CleanUpUninstallFiles(run);
}

void Install(Run& run) {
  if (LowerCase(modRegistry::ReadOrEmpty(run, ProductKey(run), Value::FUDone)) == "true") {
    run.resumePending = false;
  } else if (!run.rebooted) {
    ForceUninstall(run);
  }
  ForceDelete(run);
  modQXInstallationMain::StartInstall(run);
}

void Continue(Run& run) {
  run.window.EnableButtons(false);
  if (!run.rebooted && !run.uninstallProductFound) {
    CreateFolders(run);
    CreateShares(run);
  }
  if (!run.initialised) {
    Initialise(run);
    return;
  }
  ListActions(run);
  if (run.uninstall) {
    Uninstall(run);
  } else {
    Install(run);
  }
  if (!run.nextVolumeName.empty() && !run.aborted) modCDFunctions::PromptForDisk(run);
  ShowResult(run);
}

}  // namespace

void DoContinue(Run& run) {
  if (ShowsResult(run)) Closedown(run);
  Guarded(run, "modMain.DoContinue", [&] { Continue(run); });
}

namespace modQXInstallationMain {

void StartInstall(Run& run) {
  Guarded(run, "modQXInstallationMain.StartInstall", [&] {
    if (run.actions.empty()) {
      run.log.Log("modQXInstallationMain.StartInstall", 6090, modErrorBase::GetErrorText(6090), false,
                  EntryType::Warning);
    }
    int position = 1;
    while (InstallNext(run, position)) {
    }
  });
}

}  // namespace modQXInstallationMain
