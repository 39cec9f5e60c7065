#include "app/qxia/rehearse/play.h"

#include "base/product_record.h"
#include "core/program.h"
#include "platform/simulated/clock.h"
#include "platform/simulated/command_line.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

constexpr const char* LocalMachine = "HKEY_LOCAL_MACHINE\\";
constexpr const char* WinlogonKey = "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";

/// The copy has the folder in which it was started as its own.
void BecomeCopy(simulated::Workstation& machine, const std::string& commandLine) {
  machine.files().setCurrentFolder(machine.processes().startedIn().back());
  machine.screen().clear();
  machine.machine().setProgram(simulated::Arguments(commandLine)[0], "");
  machine.machine().setCommandLine(commandLine);
  machine.journal().record("the program goes on from its copy");
}

/// Whether a run follows, prepared as its starter would.
bool PrepareNext(Workplace& workplace, const Limits& limits, Played& played) {
  simulated::Workstation& machine = workplace.machine();
  if (const std::string copy = workplace.takeRestartedCopy(); !copy.empty() && !machine.restartRequested()) {
    BecomeCopy(machine, copy);
    return true;
  }
  if (!machine.restartRequested()) return false;
  const bool goesOn = WaitsForRestart(machine);
  if (++played.restarts > limits.restarts) {
    played.unfinished = "the machine restarted more than " + std::to_string(limits.restarts) + " times";
    return false;
  }
  if (LogOnAgain(machine)) return true;
  if (goesOn) played.unfinished = "the restart is lost: at the logon nothing starts the program again";
  return false;
}

}  // namespace

int RunTheProgram(simulated::Workstation& machine) {
  return assistant::RunProgram(machine);
}

bool WaitsForRestart(const simulated::Workstation& machine) {
  const std::string key = std::string(LocalMachine) + assistant::ProductsKey;
  return simulated::SameText(machine.registry().text(key, assistant::Value::Rebooted.name), "True");
}

bool LogOnAgain(simulated::Workstation& machine) {
  machine.restart();
  const simulated::Registry& registry = machine.registry();
  const bool automatic = registry.text(WinlogonKey, "AutoAdminLogon") == "1";
  machine.journal().record(automatic ? "the user is logged on automatically" : "the user logs on");
  const std::string program = "\"" + machine.machine().programPath() + "\"";
  for (const std::string& command : machine.logonCommands()) {
    if (!simulated::StartsWithText(command, program)) continue;
    machine.machine().setCommandLine(command);
    machine.journal().record("the logon starts " + command);
    return true;
  }
  return false;
}

Played Play(Workplace& workplace, const Limits& limits, const RunOnce& runOnce) {
  simulated::Workstation& machine = workplace.machine();
  Played played;
  played.begin = machine.clock().moment();
  machine.clock().endAfter(limits.milliseconds);
  machine.journal().record("start " + machine.machine().commandLine());
  try {
    do {
      played.exitCode = runOnce(machine);
    } while (PrepareNext(workplace, limits, played));
  } catch (const simulated::TimeIsUp&) {
    played.unfinished = "it was not over after " + std::to_string(limits.milliseconds / 60000) + " minutes";
  }
  played.end = machine.clock().moment();
  return played;
}

}  // namespace qxia
