#include "app/qxia/rehearse/settings.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "platform/simulated/host.h"
#include "platform/simulated/machine.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

constexpr const char* DefaultSystem = "Windows XP";

long long Number(const std::string& option, const std::string& text, const char* form, const char** rest) {
  char* end = nullptr;
  errno = 0;
  const long long number = std::strtoll(text.c_str(), &end, 10);
  if (end == text.c_str() || errno != 0 || number < 0) throw UsageError(option + " " + text + ": write " + form);
  *rest = end;
  return number;
}

/// 90m, 24h, 600s
std::int64_t Time(const std::string& text) {
  constexpr const char* form = "a time such as 90m, 24h or 600s";
  const char* unit = nullptr;
  const long long number = Number("--limit-time", text, form, &unit);
  const std::string units = unit;
  if (units != "s" && units != "m" && units != "h") throw UsageError("--limit-time " + text + ": write " + form);
  return number * 1000 * (units == "h" ? 3600 : units == "m" ? 60 : 1);
}

int Restarts(const std::string& text) {
  const char* rest = nullptr;
  const long long number = Number("--limit-restarts", text, "a whole number", &rest);
  if (*rest != '\0' || number > 100000) throw UsageError("--limit-restarts " + text + ": write a whole number");
  return static_cast<int>(number);
}

void AddSystem(const std::string& name, std::vector<std::string>& systems) {
  const bool isAll = simulated::SameText(name, "all");
  for (const simulated::System& system : simulated::Systems()) {
    const bool wanted = isAll || simulated::SameText(system.name, name);
    if (wanted && std::find(systems.begin(), systems.end(), system.name) == systems.end())
      systems.emplace_back(system.name);
  }
  if (!isAll) simulated::FindSystem(name);
}

std::vector<std::string> ReadSystems(const Arguments& arguments) {
  std::vector<std::string> systems;
  for (const std::string& list : arguments.all("--on"))
    for (const std::string& name : simulated::Split(list, ',')) AddSystem(simulated::Trim(name), systems);
  // A machine file says itself what it is about.
  if (systems.empty()) systems.emplace_back(arguments.has("--machine") ? "" : DefaultSystem);
  return systems;
}

}  // namespace

RehearsalSettings ReadSettings(const Arguments& arguments) {
  RehearsalSettings settings;
  settings.media = FindMedia(arguments);
  RequireAgreement(settings.media);
  settings.systems = ReadSystems(arguments);
  settings.at = arguments.text("--at");
  FirstFolder(settings.at);
  if (arguments.has("--args")) settings.arguments = arguments.text("--args");
  settings.machineFile = arguments.text("--machine");
  settings.state = arguments.text("--state");
  settings.limits.milliseconds = Time(arguments.text("--limit-time", "24h"));
  settings.limits.restarts = Restarts(arguments.text("--limit-restarts", "50"));
  return settings;
}

}  // namespace qxia
