#include "app/qxia/rehearse/run.h"

#include <utility>

#include "base/product_record.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

constexpr const char* LocalMachine = "HKEY_LOCAL_MACHINE\\";

std::string ProductsOfRecord() {
  return std::string(LocalMachine) + assistant::ProductsKey;
}

/// The product that the arguments uninstall; "" where they install.
std::string UninstalledProduct(const std::string& commandLine) {
  const std::size_t at = simulated::Lower(commandLine).find(" /x ");
  if (at == std::string::npos) return "";
  const std::string rest = commandLine.substr(at + 4);
  return simulated::Trim(rest.substr(0, rest.find(" /")));
}

/// The log to which the last row was written, not counting archived ones.
std::string LogPath(const std::vector<std::string>& effects) {
  static const std::string appended = "file append ";
  for (auto effect = effects.rbegin(); effect != effects.rend(); ++effect) {
    if (effect->rfind(appended, 0) != 0) continue;
    const std::string path = effect->substr(appended.size(), effect->rfind(" (") - appended.size());
    if (simulated::EndsWithText(path, ".html")) return path;
  }
  return "";
}

std::map<std::string, std::string> SiteValues(const simulated::Registry& registry) {
  const std::string key = ProductsOfRecord().substr(0, ProductsOfRecord().rfind('\\'));
  std::map<std::string, std::string> values;
  for (const std::string& name : registry.values(key)) values[name] = registry.text(key, name);
  return values;
}

ProductResult ReadProduct(const simulated::Registry& registry, const std::string& name, const RehearsedRun& run) {
  const std::string key = ProductsOfRecord() + "\\" + name;
  ProductResult product;
  product.name = name;
  product.version = registry.text(key, "Version");
  const bool recorded = registry.find(key, "Succeeded") != nullptr;
  product.succeeded = run.finished() && (recorded ? registry.text(key, "Succeeded") != "0" : run.played.exitCode == 0);
  for (const std::string& reason : simulated::Split(registry.text(key, "Abort Reason"), '\n'))
    if (!simulated::Trim(reason).empty()) product.reasons.push_back(simulated::Trim(reason));
  if (product.succeeded) product.reasons.clear();
  return product;
}

/// Rows of the log itself are no events of their own.
std::vector<Event> ReadEvents(const simulated::Workstation& machine) {
  std::vector<Event> events;
  for (std::size_t i = 0; i < machine.effects().size(); ++i)
    if (machine.effects()[i].rfind("file append ", 0) != 0)
      events.push_back({machine.moments()[i], machine.effects()[i]});
  return events;
}

void ReadLog(simulated::Workstation& machine, RehearsedRun& run) {
  run.log = HostFile(machine, LogPath(machine.effects()));
  if (!run.log.empty()) run.rows = std::make_shared<LogFile>(run.log);
}

}  // namespace

RehearsedRun Rehearse(Workplace& workplace, const std::string& product, const Limits& limits, const RunOnce& runOnce) {
  simulated::Workstation& machine = workplace.machine();
  const std::string uninstalled = UninstalledProduct(machine.machine().commandLine());
  const std::string name = uninstalled.empty() ? product : uninstalled;
  const Snapshot before = TakeSnapshot(machine);
  const std::vector<ComponentRecord> known = ReadComponents(machine.registry(), name);
  const std::string version = machine.registry().text(ProductsOfRecord() + "\\" + name, "Version");
  RehearsedRun run;
  run.system = simulated::Lower(machine.machine().system().name);
  run.uninstall = !uninstalled.empty();
  run.played = Play(workplace, limits, runOnce);
  run.product = ReadProduct(machine.registry(), name, run);
  if (run.product.version.empty()) run.product.version = version;
  ReadLog(machine, run);
  std::vector<ComponentRecord> components = ReadComponents(machine.registry(), name);
  if (run.uninstall && components.size() < known.size()) components = known;
  run.records = components;
  Turns turns = run.rows ? ComponentTurns(*run.rows) : Turns();
  run.components = JudgeComponents({run.uninstall, components, run.product.reasons, std::move(turns), machine.effects(),
                                    run.system, SiteValues(machine.registry())});
  run.commands = machine.processes().ran();
  const Snapshot after = TakeSnapshot(machine);
  run.registry = RegistryChanges(before, after);
  run.files = FileChanges(before, after);
  run.undeclared = machine.journal().undeclared;
  run.unanswered = machine.journal().unscripted;
  run.unused = machine.unused();
  run.reachedLastDisc = workplace.reachedLastDisc();
  run.events = ReadEvents(machine);
  return run;
}

}  // namespace qxia
