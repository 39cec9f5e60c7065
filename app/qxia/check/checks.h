// The checks: each looks at one topic of the media and tells what it finds.
#pragma once

#include <span>

#include "app/qxia/check/finding.h"
#include "app/qxia/check/media_model.h"

namespace qxia::check {

void CheckText(const MediaModel& media, Findings& findings);
void CheckKeys(const MediaModel& media, Findings& findings);
void CheckFiles(const MediaModel& media, Findings& findings);
void CheckComponents(const MediaModel& media, Findings& findings);
void CheckScripts(const MediaModel& media, Findings& findings);
void CheckVersions(const MediaModel& media, Findings& findings);
void CheckConditions(const MediaModel& media, Findings& findings);
void CheckMachineTypes(const MediaModel& media, Findings& findings);
void CheckCopies(const MediaModel& media, Findings& findings);
void CheckShares(const MediaModel& media, Findings& findings);
void CheckRemoval(const MediaModel& media, Findings& findings);
void CheckDiscs(const MediaModel& media, Findings& findings);
void CheckSilentRuns(const MediaModel& media, Findings& findings);

/// All of them; what comments of the media permit is taken out, and told where it permits nothing. Sorted by severity,
/// path and line. `permitted` becomes the number of findings that were permitted.
Findings CheckMedia(const MediaModel& media, int& permitted);

/// Takes the findings out that a comment permits.
int ApplyAllowances(const MediaModel& media, Findings& findings);

}  // namespace qxia::check
