#include "platform/win32/event_log.h"

#include "platform/win32/owner.h"

namespace win32 {

bool EventLogAdapter::reportError(const std::string& source, const std::string& text) {
  OwnedEventSource log(RegisterEventSourceA(nullptr, source.c_str()));
  if (!log) return false;
  const char* lines[] = {text.c_str()};
  return ReportEventA(log.get(), EVENTLOG_ERROR_TYPE, 0, 0, nullptr, 1, 0, lines, nullptr) != FALSE;
}

}  // namespace win32
