#include "core/install_loop.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "base/error_texts.h"
#include "base/numbers.h"
#include "base/procedure.h"
#include "base/text.h"
#include "core/end_wanted.h"
#include "core/install_component.h"
#include "core/run_stops.h"
#include "env/add_remove_programs.h"
#include "exec/msi_queries.h"
#include "exec/product_result.h"
#include "exec/sequence.h"

namespace assistant {
namespace {

/// Of the disc in work, in their order.
using Components = std::vector<std::string>;

void TellPositionUnknown(Run& run, const Procedure& here) {
  here.action("Cannot Determine the Current Sequence");
  SetProductResult(run, false, "The next component could not be determined");
}

/// A number above all stored ones is that of no component.
bool IsBeyondTable(const Run& run) {
  return run.record().readNumber(Value::LastSequence) > HighestSequenceNumber(run);
}

/// Entries of [Actions] that were passed over have numbers but no components, so that these are counted. It is the
/// first component behind the restart that asks for it: until then the loop has stood at its first place.
void TellPosition(const Run& run, const Procedure& here, double lastSequence, const Components& components) {
  const auto done = std::count_if(components.begin(), components.end(), [&](const std::string& component) {
    return RecordedSequenceNumber(run.machine.registry(), run.product.name, component) <= lastSequence;
  });
  if (done > 0) {
    here.action("Recent reboot detected.  Re-setting current sequence number, from 1 to " + std::to_string(done));
  }
}

/// Without this record the next round would install the component again.
bool WriteLastSequence(Run& run, const Procedure& here, double number) {
  here.action("Writing last sequence to register");
  // A refusal has always borne the short name.
  if (run.record().writeOrTell(here.plain(), Value::LastSequence, NumberText(number))) return true;
  SetProductResult(run, false,
                   modErrorBase::GetErrorText(6087, {"HKLM\\" + run.record().key(), Value::LastSequence.name}));
  return false;
}

/// Acts on what the component asked for; an immediate restart stops the run.
void ActOnRebootRequest(const Run& run, const Procedure& here, InstallProgress& progress) {
  const std::string request = run.record().read(Value::Reboot);
  here.action("Reboot status is " + request);
  if (EqualIgnoringCase(request, "immediate")) throw RunStops{RunStops::How::ForRestart};
  if (EqualIgnoringCase(request, "deferred")) {
    progress.restartIsDeferred = true;
  } else {
    here.action("No reboot required");
  }
}

void Finish(Run& run, const InstallProgress& progress) {
  run.services.window.statusLine("Finish");
  run.services.window.progressBar(100);
  if (run.services.log.isVerbose()) LogInstalledMSIs(run.services);
  if (const auto failure = SetLocalIAForUninstall(run)) SetProductResult(run, false, *failure);
  if (progress.restartIsDeferred) throw RunStops{RunStops::How::ForRestart};
}

/// The components done, whether before or after a restart.
void ShowProgress(frmMain& window, const Components& components, double lastSequence) {
  const auto rows = static_cast<double>(components.size());
  if (rows > 0) window.progressBar(static_cast<int>(std::min(lastSequence * 100 / SequenceStep / rows, 100.0)));
  window.statusLine("Proceeding with next component");
}

NextInstall FindNextComponent(const Run& run, const Procedure& here, const Components& components,
                              double lastSequence) {
  const Sequence sequence = GetSequence(run, components);
  here.action("Last Sequence was " + NumberText(lastSequence));
  const NextInstall next = GetNextInstall(run, sequence, lastSequence);
  if (next.is != NextInstall::Is::Found) return next;
  here.action("Next component is " + next.component.name + " v." + next.component.productVersion);
  run.services.window.component(next.component.name);
  return next;
}

enum class Round { Done, NoneLeft, CutShort };

/// What follows a component that was worked on: its place is recorded, and its request for a restart acted on.
Round CloseRound(Run& run, const Procedure& here, InstallProgress& progress, const Components& components,
                 double number, double lastSequence) {
  if (std::exchange(progress.positionIsBeforeRestart, false)) TellPosition(run, here, lastSequence, components);
  if (!WriteLastSequence(run, here, number)) return Round::CutShort;
  EndIfWanted(run.services);
  ActOnRebootRequest(run, here, progress);
  return Round::Done;
}

Round InstallNext(Run& run, const Procedure& here, InstallProgress& progress, const Components& components) {
  const double lastSequence = run.record().readNumber(Value::LastSequence);
  ShowProgress(run.services.window, components, lastSequence);
  const NextInstall next = FindNextComponent(run, here, components, lastSequence);
  if (next.is == NextInstall::Is::Unknown) TellPositionUnknown(run, here);
  if (next.is != NextInstall::Is::Found) {
    return next.is == NextInstall::Is::None ? Round::NoneLeft : Round::CutShort;
  }
  const ComponentEnd end = InstallComponent(run, here, next.component, ListInstalledProducts(run.services));
  if (end == ComponentEnd::Aborted) return Round::CutShort;
  return CloseRound(run, here, progress, components, next.component.sequenceNumber, lastSequence);
}

}  // namespace

LoopEnd StartInstall(Run& run, InstallProgress& progress) {
  // Rows without a number bear the short name, the others have always borne the module's as well.
  const Procedure here(run.services.log, "StartInstall", "modQXInstallationMain.StartInstall");
  Round round = Round::CutShort;
  const auto failure = here.failureOf([&] {
    const Components components = RecordedComponents(run);
    if (components.empty()) here.warn(6090);
    EndIfWanted(run.services);
    if (run.state.kind == RunKind::Resumed && IsBeyondTable(run)) return TellPositionUnknown(run, here);
    do {
      round = InstallNext(run, here, progress, components);
    } while (round == Round::Done);
    if (round == Round::NoneLeft && run.product.nextVolume.empty()) Finish(run, progress);
  });
  if (failure) SetProductResult(run, false, *failure);
  return round == Round::NoneLeft ? LoopEnd::NoneLeft : LoopEnd::CutShort;
}

}  // namespace assistant
