#include "core/removal_task.h"

#include "base/numbers.h"
#include "base/text.h"
#include "exec/process.h"

namespace {

constexpr int DelayMinutes = 2;
constexpr int MinutesOfDay = 24 * 60;

}  // namespace

std::string RemovalCommand(const platform::LocalTime& now, const std::string& systemRoot, const std::string& file) {
  const int minutes = (now.hour * 60 + now.minute + DelayMinutes) % MinutesOfDay;
  return "AT " + Padded(minutes / 60, 2) + ":" + Padded(minutes % 60, 2) + " " + systemRoot +
         "\\System32\\cmd.exe /c del " + Quoted(file);
}

void ScheduleRemoval(Run& run, const std::string& file) {
  constexpr const char* source = "Closedown";
  run.log.Log(source, 0, "Setting task to remove local IA .exe");
  const std::string command =
      RemovalCommand(run.machine.clock().now(), run.machine.machine().environment("SystemRoot"), file);
  run.log.Log(source, 0, "Task Scheduler command: " + command);
  const std::int32_t result = GoShell(run, command, "", 5000, platform::ShowWindow::Hidden);
  run.log.Log(source, 0, "Task Scheduler command returned " + std::to_string(result));
}
