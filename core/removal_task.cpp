#include "core/removal_task.h"

#include <algorithm>
#include <vector>

#include "base/numbers.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/process.h"

namespace {

constexpr int DelayMinutes = 2;
constexpr int MinutesOfDay = 24 * 60;

bool AnyProductCanBeUninstalled(Run& run) {
  const std::vector<std::string> products = modRegistry::SubKeys(run, ProductsKey);
  return std::any_of(products.begin(), products.end(), [&run](const std::string& product) {
    return modRegistry::RegKeyExists(run, ProductKey(product), "CanUninstall");
  });
}

}  // namespace

std::string RemovalCommand(const platform::LocalTime& now, const std::string& systemRoot, const std::string& file) {
  const int minutes = (now.hour * 60 + now.minute + DelayMinutes) % MinutesOfDay;
  return "AT " + Padded(minutes / 60, 2) + ":" + Padded(minutes % 60, 2) + " " + systemRoot +
         "\\System32\\cmd.exe /c del " + Quoted(file);
}

void ScheduleProgramRemoval(Run& run) {
  constexpr const char* source = "Closedown";
  if (AnyProductCanBeUninstalled(run)) return;
  run.log.Log(source, 0, "Setting task to remove local IA .exe");
  const std::string command = RemovalCommand(run.machine.clock().now(), run.machine.machine().environment("SystemRoot"),
                                             run.machine.machine().programPath());
  run.log.Log(source, 0, "Task Scheduler command: " + command);
  const std::int32_t result = GoShell(run, command, "", 5000, 0);
  run.log.Log(source, 0, "Task Scheduler command returned " + std::to_string(result));
}
