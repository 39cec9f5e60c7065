// The Application event log of this machine, if it keeps one.
#pragma once

#include "platform/event_log.h"

namespace win32 {

class EventLogAdapter final : public platform::EventLog {
 public:
  bool reportError(const std::string& source, const std::string& text) override;
};

}  // namespace win32
