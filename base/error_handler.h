// The error handler that every procedure has: it logs a failure under the procedure's name and lets the caller go on
// with a neutral result.
#pragma once

#include <exception>
#include <string>
#include <type_traits>
#include <utility>

#include "base/error.h"
#include "base/run.h"

/// Log entry of an error handler. A failure of the language's own library is told with the general number.
inline void LogFailure(Run& run, const std::string& source, const std::exception& failure, bool showMessage = false) {
  if (const auto* error = dynamic_cast<const Error*>(&failure)) {
    run.log.Log(source, *error, showMessage);
  } else {
    run.log.Log(source, GeneralError, failure.what(), showMessage);
  }
}

/// Runs the body; when it fails, logs that under `source` (and shows it when asked) and returns the neutral result of
/// its type.
template <class Body>
auto GuardedAs(Run& run, const std::string& source, bool showMessage, Body&& body) -> decltype(body()) {
  using Result = decltype(body());
  try {
    return std::forward<Body>(body)();
  } catch (const std::exception& failure) {
    LogFailure(run, source, failure, showMessage);
  }
  if constexpr (!std::is_void_v<Result>) return Result{};
}

/// The same without any message box: what nearly every procedure uses.
template <class Body>
auto Guarded(Run& run, const std::string& source, Body&& body) -> decltype(body()) {
  return GuardedAs(run, source, false, std::forward<Body>(body));
}

/// The same; the failure is also shown, except on a silent run.
template <class Body>
auto GuardedAndShown(Run& run, const std::string& source, Body&& body) -> decltype(body()) {
  return GuardedAs(run, source, !run.silent, std::forward<Body>(body));
}
