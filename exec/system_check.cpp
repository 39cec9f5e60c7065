#include "exec/system_check.h"

#include "base/operating_systems.h"
#include "base/procedure.h"
#include "base/text.h"

namespace assistant {
namespace {

constexpr const char* UnknownSystem = "0";

}  // namespace

const std::string& SystemName(const Run& run) {
  std::string& known = run.facts.operatingSystem;
  if (known.empty() || known == UnknownSystem) known = run.services.fso.operatingSystem();
  return known;
}

bool IsValidOS(const Run& run, const std::string& keyword) {
  const Procedure here(run.services.log, "modMain.IsValidOS");
  return here.guard([&] {
    const std::string& name = SystemName(run);
    here.action("OS Check - System OS = " + name + ", Query OS = " + keyword);
    if (name == UnknownSystem && !keyword.empty()) here.warn("OS was not recognised");
    const OperatingSystem* system = FindOperatingSystem(name);
    const bool matched = !keyword.empty() && system != nullptr && Trim(LowerCase(keyword)) == system->keyword;
    here.action(matched ? "OS check matched" : "OS check did not match");
    return matched;
  });
}

}  // namespace assistant
