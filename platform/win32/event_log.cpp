#include "platform/win32/event_log.h"

#include "platform/win32/windows_api.h"

namespace win32 {

bool EventLog::reportError(const std::string& source, const std::string& text) {
  HANDLE log = RegisterEventSourceA(nullptr, source.c_str());
  if (log == nullptr) return false;
  const char* lines[] = {text.c_str()};
  BOOL reported = ReportEventA(log, EVENTLOG_ERROR_TYPE, 0, 0, nullptr, 1, 0, lines, nullptr);
  DeregisterEventSource(log);
  return reported != FALSE;
}

}  // namespace win32
