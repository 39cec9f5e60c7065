// Rehearsals of one set of media, system by system, each on a machine of its own.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "app/qxia/rehearse/run.h"
#include "app/qxia/rehearse/scratch_folder.h"
#include "app/qxia/rehearse/settings.h"

namespace qxia {

class Rehearsals {
 public:
  explicit Rehearsals(const RehearsalSettings& settings) : settings_(settings) {}

  /// Without --state the machine stays only as long as this object, and its log for whoever reads on.
  RehearsedRun rehearse(const std::string& system);
  /// That of --machine, or one made for the media.
  std::string machineFileFor(const std::string& system);
  /// Links of the media that were not followed.
  const std::set<std::string>& leftOut() const { return leftOut_; }

 private:
  std::string folderFor(const std::string& system) const;
  void keepLog(RehearsedRun& run);

  const RehearsalSettings& settings_;
  ScratchFolder scratch_;
  std::set<std::string> leftOut_;
  std::string declarations_;  ///< made for the media, on the system below
  std::string declaredFor_;
};

}  // namespace qxia
