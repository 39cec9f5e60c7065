// Port: the Application event log (source: RegisterEventSourceA, ReportEventA).
#pragma once

#include <string>

namespace platform {

class EventLog {
 public:
  virtual ~EventLog() = default;

  /// Adds one record of type error under the program's title; false when the machine has no event log or refuses.
  virtual bool reportError(const std::string& source, const std::string& text) = 0;
};

}  // namespace platform
