#include "app/qxia/rehearse/held_back.h"

#include <cctype>

#include "platform/simulated/text.h"

namespace qxia {
namespace {

using Rows = std::vector<LogRow>;
using Site = std::map<std::string, std::string>;

constexpr const char* NewerCondition = "Checking condition ";
constexpr const char* MachineType = "is not meant for this machine type (";

/// "os = (<>)win95" as the ini wrote it: "os<>win95".
std::string AsWritten(const std::string& logged) {
  const std::size_t equals = logged.find(" = ");
  if (equals == std::string::npos) return logged;
  const std::string data = logged.substr(equals + 3);
  const std::size_t close = data.rfind('(', 0) == 0 ? data.find(')') : std::string::npos;
  if (close == std::string::npos) return logged.substr(0, equals) + "=" + data;
  return logged.substr(0, equals) + data.substr(1, close - 1) + data.substr(close + 1);
}

bool IsOlderCondition(const std::string& text) {
  return text.rfind("Condition ", 0) == 0 && text.size() > 10 && std::isdigit(static_cast<unsigned char>(text[10])) &&
         text.find(". ") != std::string::npos;
}

/// The condition that was looked at last.
std::string LastCondition(const Rows& turn) {
  for (auto row = turn.rbegin(); row != turn.rend(); ++row) {
    if (row->text.rfind(NewerCondition, 0) == 0) return AsWritten(row->text.substr(19));
    if (IsOlderCondition(row->text)) return row->text.substr(row->text.find(". ") + 2);
  }
  return "";
}

std::string ValueOf(const Site& site, const char* name) {
  const auto found = site.find(name);
  return found == site.end() || found->second.empty() ? "none" : found->second;
}

/// What the machine has in place of what the condition wants; "" where the condition itself says it all.
std::string MachineHas(const std::string& condition, const Rows& turn, const std::string& system, const Site& site) {
  const std::string name = simulated::Lower(condition.substr(0, condition.find_first_of("<>=")));
  if (name == "os") return system;
  if (name == "productname") return "product " + ValueOf(site, "Product");
  if (name == "servertype") return "machine type " + ValueOf(site, "Server Type");
  if (name == "buildnumber") return "build " + ValueOf(site, "Server Build Version");
  if (name == "runoninstall" || name == "installedproducts") return "";
  for (auto row = turn.rbegin(); row != turn.rend(); ++row) {
    if (row->text.rfind("Version = ", 0) == 0) {
      const std::string version = row->text.substr(10);
      return version == "v0.0.0.0" ? "no such product" : "version " + version;
    }
    if (row->text.rfind("Process Return = ", 0) == 0) {
      const std::string outcome = row->text.substr(17);
      return outcome.empty() ? "no outcome of it" : "outcome \"" + outcome + "\"";
    }
  }
  return "";
}

std::string OtherMachineType(const Rows& turn) {
  for (const LogRow& row : turn) {
    const std::size_t at = row.text.find(MachineType);
    if (at == std::string::npos) continue;
    const std::size_t start = at + std::string(MachineType).size();
    return "MachineType=" + TextBehind(turn, "Condition is ") + "; the machine has " +
           row.text.substr(start, row.text.rfind("),") - start);
  }
  return "";
}

}  // namespace

std::string WhyHeldBack(const Rows& turn, const std::string& system, const Site& site) {
  const std::string type = OtherMachineType(turn);
  if (!type.empty()) return type;
  const std::string condition = LastCondition(turn);
  if (condition.empty()) return "a condition does not hold";
  const std::string has = MachineHas(condition, turn, system, site);
  return has.empty() ? condition : condition + "; the machine has " + has;
}

}  // namespace qxia
