// What every procedure logs and fails with.
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/app_log.h"
#include "base/error.h"
#include "platform/status.h"

namespace assistant {

/// A procedure under the name that the log shows. One stands at the start of each procedure and is handed to what helps
/// it, so that a name is written once and a row of the log leads to one function.
class Procedure {
 public:
  /// `handler` is the name under which everything with a number is logged, where logs have always spelt that otherwise.
  Procedure(clsAppLog& log, std::string_view name, std::string_view handler = {})
      : log_(log), name_(name), handler_(handler.empty() ? name : handler) {}

  /// One row of the log.
  void action(const std::string& text) const { log_.log(name(), 0, text); }
  /// The same on verbose runs only.
  void detail(const std::string& text) const;
  void warn(const std::string& text) const { log_.log(name(), 0, text, Shown::No, EntryType::Warning); }
  /// An error row without a number.
  void error(const std::string& text) const { log_.log(name(), 0, text, Shown::No, EntryType::Error); }
  /// A row with a number of the table of error texts and the text that belongs to it.
  void error(int number, const std::vector<std::string>& values = {}, Shown shown = Shown::No) const;
  void warn(int number, const std::vector<std::string>& values = {}) const;
  /// A warning with the general number, which names this procedure.
  void warnNumbered(const std::string& text, Shown shown = Shown::No) const;
  /// A failure that was caught, or that is told and not raised. One of the language's own library has the general
  /// number.
  void tell(const std::exception& failure, Shown shown = Shown::No) const;

  /// A failure to be thrown, of the table's number or of the general one, with this procedure as its source.
  Error failure(int number, const std::vector<std::string>& values = {}) const;
  Error failure(const std::string& text) const { return Error(GeneralError, text, std::string(handler_)); }
  /// The same with the system's number.
  Error failure(platform::Status status, const std::string& text) const;

  /// The error handler: runs the body; when it fails, tells that and returns the neutral result of the body's type.
  template <class Body>
  auto guard(Body&& body, Shown shown = Shown::No) const -> decltype(body()) {
    using Result = decltype(body());
    try {
      return std::forward<Body>(body)();
    } catch (const std::exception& failed) {
      tell(failed, shown);
    }
    if constexpr (!std::is_void_v<Result>) return Result{};
  }

  /// The same for a body whose failure the caller has to act on: the failure's text, or nothing when the body came to
  /// its end.
  template <class Body>
  std::optional<std::string> failureOf(Body&& body, Shown shown = Shown::No) const {
    try {
      std::forward<Body>(body)();
      return std::nullopt;
    } catch (const std::exception& failed) {
      tell(failed, shown);
      return failed.what();
    }
  }

  /// The same procedure, for a row that bears the plain name although it has a number.
  Procedure plain() const { return {log_, name_}; }
  std::string name() const { return std::string(name_); }
  clsAppLog& log() const { return log_; }

 private:
  clsAppLog& log_;
  std::string_view name_;
  std::string_view handler_;
};

}  // namespace assistant
