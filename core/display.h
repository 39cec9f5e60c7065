// What a run shows of itself: its window, or on a silent run its icon in the notification area.
#pragma once

#include "base/run.h"
#include "base/services.h"

namespace assistant {

/// Reason of a run that a person ended.
inline constexpr const char* UserAbortedRun = "User aborted run";

/// Shows the window with its captions and its welcome, or adds the tray icon.
void ShowRun(const Run& run);

/// Tells that the run is prepared and may be begun.
void ShowReady(const Run& run);

/// Tells that the run's work begins and disables the buttons for it.
void ShowWork(const Run& run);

/// Tells an interactive run's result: the end message, or what failed and why.
void ShowResult(const Run& run);

/// Turns the window into that of a run that has come to its end: Continue finishes, About shows the log.
void OfferFinish(const Services& services);

/// What About does: before the end it tells the switches and where the log is, then it opens the log.
void ShowAboutBox(const Services& services);
void ViewLog(const Services& services);

}  // namespace assistant
