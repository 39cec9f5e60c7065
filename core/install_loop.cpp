#include "core/install_loop.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/error_handler.h"
#include "base/error_texts.h"
#include "base/numbers.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "core/closedown.h"
#include "core/display.h"
#include "core/end_of_run.h"
#include "core/initialise.h"
#include "core/install_component.h"
#include "core/resume.h"
#include "env/add_remove_programs.h"
#include "env/forced_removal.h"
#include "env/multi_disk.h"
#include "env/reboot.h"
#include "env/shares.h"
#include "env/uninstall.h"
#include "exec/guarded_run.h"
#include "exec/msi_queries.h"
#include "exec/outcome.h"
#include "exec/sequence.h"

namespace {

constexpr const char* Source = "StartInstall";

void TellPositionUnknown(Run& run) {
  run.log.Log(Source, 0, "Cannot Determine the Current Sequence");
  SetProductResult(run, false, "The next component could not be determined");
}

/// The first component of a resumed run sets the loop's position from the sequence number that was done last. The
/// logged position is one less than the one taken. False when the number lies beyond the table.
bool ResetPosition(Run& run, double lastSequence, int& position) {
  run.resumePending = false;
  if (lastSequence < SequenceStep) {
    position = 1;
    return true;
  }
  const double done = lastSequence / SequenceStep;
  if (done > static_cast<double>(run.sequence.size())) {
    TellPositionUnknown(run);
    return false;
  }
  run.log.Log(Source, 0,
              "Recent reboot detected.  Re-setting current sequence number, from " + std::to_string(position) + " to " +
                  NumberText(done));
  position = static_cast<int>(RoundedToEven(done + 1));
  return true;
}

/// Without this record the next round would install the component again.
bool WriteLastSequence(Run& run) {
  const std::string number = NumberText(run.component.sequenceNumber);
  if (modRegistry::WriteOrTell(run, ProductKey(run), Value::LastSequence, number, Source)) return true;
  SetProductResult(run, false, modErrorBase::GetErrorText(6087, {"HKLM\\" + ProductKey(run), Value::LastSequence}));
  return false;
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

/// The components done, whether before or after a restart.
void ShowProgress(Run& run, double lastSequence) {
  const auto rows = static_cast<double>(run.actions.size());
  if (rows > 0) run.window.ProgressBar(static_cast<int>(std::min(lastSequence * 100 / SequenceStep / rows, 100.0)));
  run.window.StatusLine("Proceeding with next component");
}

NextComponent FindNextComponent(Run& run, double lastSequence) {
  modQXInstallationMain::GetSequence(run);
  run.log.Log(Source, 0, "Last Sequence was " + NumberText(lastSequence));
  const NextComponent next = modMain::GetNextInstall(run, lastSequence);
  if (next != NextComponent::Found) return next;
  run.log.Log(Source, 0, "Next component is " + run.component.name + " v." + run.component.productVersion);
  run.window.Component(run.component.name);
  return next;
}

enum class Round { Done, NoneLeft, Ended };

/// One round of the loop.
Round InstallNext(Run& run, int& position) {
  const double lastSequence = modRegistry::ReadNumber(run, ProductKey(run), Value::LastSequence);
  ShowProgress(run, lastSequence);
  const NextComponent next = FindNextComponent(run, lastSequence);
  if (next == NextComponent::Unknown) TellPositionUnknown(run);
  if (next != NextComponent::Found) return next == NextComponent::None ? Round::NoneLeft : Round::Ended;
  ListInstalledProducts(run);
  if (InstallComponent(run) == ComponentEnd::Aborted) return Round::Ended;
  if (run.resumePending && !ResetPosition(run, lastSequence, position)) return Round::Ended;
  run.log.Log(Source, 0, "Writing last sequence to register");
  if (!WriteLastSequence(run)) return Round::Ended;
  EndIfWanted(run);
  ActOnRebootRequest(run);
  ++position;
  return Round::Done;
}

void Uninstall(Run& run) {
  StartUninstall(run);
  EndIfWanted(run);
  // What failed stays recorded, so that the uninstall can be run again.
  if (run.failed) return;
  CleanUpUninstallFiles(run);
  ForgetResume(run);
}

/// Discs that lead to each other in a circle would be asked for without end.
void RequireNewDisc(const Run& run, std::vector<std::string>& asked) {
  const bool again = std::any_of(asked.begin(), asked.end(), [&](const std::string& volume) {
    return EqualIgnoringCase(volume, run.nextVolumeName);
  });
  if (again) {
    throw Error(GeneralError,
                "The disk labelled " + run.nextVolumeName +
                    " was installed already, and a disk behind it names it as the next one. Correct NextVolumeName in "
                    "section [Product] of " +
                    run.productIniPath + " or " + run.appIniPath + ".",
                "DoContinue");
  }
  asked.push_back(run.nextVolumeName);
}

bool FindNextDisc(Run& run, std::vector<std::string>& asked) {
  try {
    RequireNewDisc(run, asked);
    modCDFunctions::PromptForDisk(run);
    return true;
  } catch (const Error& failure) {
    LogFailure(run, failure.source(), failure);
    SetProductResult(run, false, failure.text());
    return false;
  }
}

/// Goes over to the product's next disc; false when that could not be found or prepared, which is told.
bool ChangeDisc(Run& run, std::vector<std::string>& asked) {
  if (!FindNextDisc(run, asked) || !InitialiseNextDisc(run)) return false;
  ShowWork(run);
  CreateFolders(run);
  CreateShares(run);
  ListActions(run);
  return true;
}

/// One disc after another. A disc whose work was cut short is the last.
void InstallDiscs(Run& run) {
  std::vector<std::string> asked;
  while (modQXInstallationMain::StartInstall(run) && !run.nextVolumeName.empty()) {
    if (!ChangeDisc(run, asked)) return;
  }
}

void Install(Run& run) {
  if (LowerCase(modRegistry::ReadOrEmpty(run, ProductKey(run), Value::FUDone)) == "true") {
    run.resumePending = false;
  } else if (!run.rebooted) {
    ForceUninstall(run);
  }
  ForceDelete(run);
  InstallDiscs(run);
}

void Continue(Run& run) {
  ShowWork(run);
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
  ShowResult(run);
}

}  // namespace

void DoContinue(Run& run) {
  if (ShowsResult(run)) Closedown(run);
  if (!GuardedRun(run, "modMain.DoContinue", [&] { Continue(run); })) ShowResult(run);
}

namespace modQXInstallationMain {

bool StartInstall(Run& run) {
  Round round = Round::Ended;
  GuardedRun(run, "modQXInstallationMain.StartInstall", [&] {
    if (run.actions.empty()) {
      run.log.Log("modQXInstallationMain.StartInstall", 6090, modErrorBase::GetErrorText(6090), false,
                  EntryType::Warning);
    }
    EndIfWanted(run);
    int position = 1;
    do {
      round = InstallNext(run, position);
    } while (round == Round::Done);
    if (round == Round::NoneLeft && run.nextVolumeName.empty()) Finish(run);
  });
  return round == Round::NoneLeft;
}

}  // namespace modQXInstallationMain
