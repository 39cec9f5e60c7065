// What the process returns.
#pragma once

namespace assistant::ExitCode {

inline constexpr int Succeeded = 0;  ///< also of a run that goes on elsewhere: behind a restart, or as the local copy
inline constexpr int Failed = 1;
inline constexpr int Cancelled = 2;  ///< a person cancelled or declined
inline constexpr int AnotherCopyRuns = 3;

}  // namespace assistant::ExitCode
