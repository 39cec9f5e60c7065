#include "exec/machine_types.h"

#include <algorithm>
#include <vector>

#include "base/error_handler.h"
#include "base/ini.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"

namespace {

constexpr std::size_t ShortestType = 2;

struct MachineQuery {
  const char* query;
  std::vector<std::string> accepted;
};

/// Queries that stand for several types; any other text is a list of types itself.
const std::vector<MachineQuery>& NamedQueries() {
  static const std::vector<MachineQuery> queries = {
      {"all 1st machines", {"dcforest", "dcunit", "eaddcunit", "dcchild"}},
      {"1st machine", {"dcforest"}},
      {"nth machine", {"dcreplica"}},
      {"1st machine (child domain)", {"dcchild"}},
  };
  return queries;
}

/// Elements of a list are compared as they stand, blanks included.
bool Accepts(const std::string& query, const std::string& machineType) {
  const auto& queries = NamedQueries();
  const auto named =
      std::find_if(queries.begin(), queries.end(), [&](const MachineQuery& entry) { return query == entry.query; });
  const std::vector<std::string> accepted = named != queries.end() ? named->accepted : Split(query, ',');
  return std::find(accepted.begin(), accepted.end(), machineType) != accepted.end();
}

bool KnowsMachineType(const Run& run) {
  return run.serverType.size() >= ShortestType;
}

}  // namespace

namespace modMain {

bool IsValidMachine(Run& run, const std::string& query) {
  constexpr const char* source = "modMain.IsValidMachine";
  return Guarded(run, source, [&] {
    const std::string wanted = LowerCase(query);
    if (wanted.empty() || wanted == "all machines") return true;
    if (!KnowsMachineType(run)) {
      run.serverType = modRegistry::ReadOrEmpty(run, InstallationKey, Value::ServerType);
      if (!KnowsMachineType(run)) {
        if (Contains(wanted, "vanilla")) return true;
        run.serverType = modINI::GetIniString(run, "Product", "ServerType", "", run.productIniPath, true);
      }
    }
    if (run.serverType.empty()) {
      run.log.Log(source, GeneralError, "Machine type could not be determined", false, EntryType::Warning);
      return true;
    }
    return Accepts(wanted, LowerCase(run.serverType));
  });
}

bool CheckMachineType(Run& run) {
  constexpr const char* source = "modMain.CheckMachineType";
  return Guarded(run, source, [&] {
    const std::string stored = ComponentValue(run, "MachineType");
    const std::string query = stored == MissingValue ? std::string() : LowerCase(stored);
    if (run.verbose) run.log.Log(source, 0, "Condition is " + query);
    return IsValidMachine(run, query);
  });
}

}  // namespace modMain
