#include "exec/machine_types.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "base/ini.h"
#include "base/procedure.h"
#include "base/text.h"

namespace assistant {
namespace {

constexpr std::size_t ShortestType = 2;

struct NamedQuery {
  const char* query;
  const char* types;
};

// Any other text is a list of types itself.
constexpr NamedQuery NamedQueries[] = {
    {"all 1st machines", "dcforest,dcunit,eaddcunit,dcchild"},
    {"1st machine", "dcforest"},
    {"nth machine", "dcreplica"},
    {"1st machine (child domain)", "dcchild"},
};

/// Elements of a list are compared as they stand, blanks included.
bool Accepts(const std::string& query, const std::string& machineType) {
  const std::vector<std::string> accepted = AcceptedTypes(query);
  return std::find(accepted.begin(), accepted.end(), machineType) != accepted.end();
}

bool IsType(const std::string& text) {
  return text.size() >= ShortestType;
}

}  // namespace

bool IsValidMachine(const Run& run, const std::string& query) {
  const Procedure here(run.services.log, "modMain.IsValidMachine");
  return here.guard([&] {
    const std::string wanted = LowerCase(query);
    if (AcceptsEveryMachine(wanted)) return true;
    std::string& known = run.facts.serverType;
    if (!IsType(known)) {
      known = run.record().read(Value::ServerType);
      if (!IsType(known)) {
        if (Contains(wanted, "vanilla")) return true;
        known = modINI::GetIniString(run.productIni(), "Product", "ServerType",
                                     run.record().read(Value::ProductServerType));
      }
    }
    if (known.empty()) {
      here.warnNumbered("Machine type could not be determined");
      return true;
    }
    return Accepts(wanted, LowerCase(known));
  });
}

bool AcceptsEveryMachine(const std::string& query) {
  return query.empty() || EqualIgnoringCase(query, "all machines");
}

std::vector<std::string> AcceptedTypes(const std::string& query) {
  const std::string wanted = LowerCase(query);
  const auto* named = std::find_if(std::begin(NamedQueries), std::end(NamedQueries),
                                   [&](const NamedQuery& candidate) { return wanted == candidate.query; });
  return Split(named != std::end(NamedQueries) ? named->types : wanted, ',');
}

std::vector<std::string> KnownMachineTypes() {
  std::vector<std::string> known;
  for (const NamedQuery& query : NamedQueries) {
    for (const std::string& type : Split(query.types, ','))
      if (std::find(known.begin(), known.end(), type) == known.end()) known.push_back(type);
  }
  return known;
}

bool CheckMachineType(const Run& run, const Component& component) {
  const Procedure here(run.services.log, "modMain.CheckMachineType");
  return here.guard([&] {
    const std::string query = component.machineType == MissingValue ? "" : LowerCase(component.machineType);
    here.detail("Condition is " + query);
    return IsValidMachine(run, query);
  });
}

}  // namespace assistant
