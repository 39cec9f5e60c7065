// The exit codes of the process, as docs/operators-guide.md tells them.
#pragma once

namespace assistant::ExitCode {

inline constexpr int Succeeded = 0;
inline constexpr int Failed = 1;
inline constexpr int Cancelled = 2;  ///< a person cancelled or declined
inline constexpr int AnotherCopyRuns = 3;
inline constexpr int AnotherProductWaited = 4;  ///< its restart was pending: it was carried on, this one not started

}  // namespace assistant::ExitCode
