// One rehearsed run on one system, with all that is told of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "app/qxia/rehearse/play.h"
#include "app/qxia/rehearse/rows.h"
#include "app/qxia/rehearse/snapshot.h"
#include "app/qxia/rehearse/verdicts.h"
#include "app/qxia/result.h"

namespace qxia {

/// Something that happened on the machine.
struct Event {
  std::int64_t moment;
  std::string text;
};

struct RehearsedRun {
  std::string system;  ///< "windows xp"
  Played played;
  ProductResult product;
  std::vector<ComponentResult> components;
  std::vector<std::string> commands;  ///< that ran, in order
  std::vector<RegistryChange> registry;
  std::vector<FileChange> files;
  std::vector<ComponentRecord> records;  ///< of the components
  std::vector<std::string> undeclared;   ///< what ran without a declaration
  std::vector<std::string> unanswered;   ///< boxes and dialogs that nobody answered
  std::vector<std::string> unused;       ///< declarations that nothing used
  std::vector<std::string> looseEnds;    ///< what of both is to be told
  bool reachedLastDisc = true;           ///< else there were components of which the machine has no record
  std::vector<Event> events;
  std::shared_ptr<const LogFile> rows;  ///< of the log; null where there is none
  std::string log;                      ///< of this computer; "" where there is none
  bool uninstall = false;

  bool finished() const { return played.unfinished.empty(); }
};

/// Plays the run of a workplace through and tells what became of it. `product` is the one that is installed, unless the
/// arguments ask for an uninstall.
RehearsedRun Rehearse(Workplace& workplace, const std::string& product, const Limits& limits,
                      const RunOnce& runOnce = RunTheProgram);

}  // namespace qxia
