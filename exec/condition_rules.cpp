#include "exec/condition_rules.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

#include "base/operating_systems.h"
#include "base/records.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/machine_types.h"
#include "exec/versions.h"

namespace {

constexpr const char* Source = "CheckConditions";
constexpr const char* OlderMessage = "Condition not satisfied.";

/// "=" wants the fact, "<>" its opposite, and every other operator is content with either.
bool Holds(const std::string& op, bool fact) {
  if (op == "=") return fact;
  return op == "<>" ? !fact : true;
}

/// The condition holds when the text is unknown here or compares as wanted.
bool TextHolds(const std::string& op, const std::string& installed, const std::string& required) {
  return installed.empty() || Holds(op, installed == required);
}

bool ProductNameHolds(Run& run, const Condition& condition) {
  return TextHolds(condition.op, LowerCase(modRegistry::ReadOrEmpty(run, InstallationKey, Value::Product)),
                   LowerCase(WithoutQuotes(condition.operand)));
}

bool ServerTypeHolds(Run& run, const Condition& condition) {
  const std::string query = LowerCase(WithoutQuotes(condition.operand));
  if (query.size() < 2 || (condition.op != "=" && condition.op != "<>")) return true;
  return Holds(condition.op, modMain::IsValidMachine(run, query));
}

bool BuildNumberHolds(Run& run, const Condition& condition) {
  return TextHolds(condition.op, modRegistry::ReadOrEmpty(run, InstallationKey, "Server Build Version"),
                   WithoutQuotes(condition.operand));
}

bool InstalledProductsHolds(Run& run, const Condition& condition) {
  const std::string key = ProductKey(WithoutQuotes(condition.operand));
  return Holds(condition.op, !modRegistry::ReadOrEmpty(run, key, Value::Version).empty());
}

/// "<>" inverts the match; an operator that means nothing here is told and passed over.
bool OsHolds(Run& run, const Condition& condition, bool matched) {
  if (condition.op == "<>") return !matched;
  if (condition.op != "=") {
    run.log.Log(Source, 0, "Unrecognised OS operator (" + condition.op + ")", false, EntryType::Warning);
  }
  return matched;
}

bool CurrentOsHolds(Run& run, const Condition& condition) {
  const std::vector<std::string> keywords = Split(condition.operand, '|');
  const bool matched = std::any_of(keywords.begin(), keywords.end(), [&run](const std::string& keyword) {
    return modMain::IsValidOS(run, WithoutQuotes(keyword));
  });
  return OsHolds(run, condition, matched);
}

bool OlderOsHolds(Run& run, const Condition& condition) {
  const OperatingSystem* system = FindOperatingSystem(SystemName(run));
  return OsHolds(run, condition, system != nullptr && Contains(condition.operand, system->olderKeyword));
}

bool RunOnInstallHolds(Run&, const Condition& condition) {
  return !ContainsIgnoringCase(condition.operand, "false");
}

struct Rule {
  const char* keyword;
  bool olderNameIsWhole;  ///< the older notation finds the other keywords anywhere in a name
  bool (*holds)(Run&, const Condition&);
  const char* message;
  bool (*olderHolds)(Run&, const Condition&);
  const char* olderMessage;
};

// In the order in which the older notation looks for them in a name.
constexpr Rule rules[] = {
    {"productname", false, ProductNameHolds, "Condition not satisfied - Product Name does not match.", ProductNameHolds,
     OlderMessage},
    {"servertype", false, ServerTypeHolds, "Condition not satisfied - Server Type does not match.", ServerTypeHolds,
     "Condition not satisfied - Server Type does not match."},
    {"buildnumber", false, BuildNumberHolds, "Condition not satisfied - Server Build Number does not match.",
     BuildNumberHolds, OlderMessage},
    {"installedproducts", false, InstalledProductsHolds, "Condition not satisfied - Installed Product",
     InstalledProductsHolds, "Condition not satisfied - Installed Product"},
    {"os", true, CurrentOsHolds, "Condition not satisfied - OS not supported.", OlderOsHolds,
     "Condition not satisfied - OS not supported."},
    {"runoninstall", false, RunOnInstallHolds, "Condition not satisfied - Component cannot be installed.",
     RunOnInstallHolds, "Condition not satisfied - Component cannot be installed."},
};

bool IsOlderName(const Rule& rule, const std::string& name) {
  return rule.olderNameIsWhole ? EqualIgnoringCase(name, rule.keyword) : ContainsIgnoringCase(name, rule.keyword);
}

void Require(bool holds, int errorNumber, const std::string& message) {
  if (!holds) throw Error(errorNumber, message, Source);
}

struct VersionOperator {
  const char* op;
  int errorNumber;
  bool (*holds)(Run&, const std::string& installed, const std::string& required);
};

bool IsOther(Run&, const std::string& installed, const std::string& required) {
  return installed != required;
}

bool IsOlder(Run& run, const std::string& installed, const std::string& required) {
  return IsNewerVersion(run, required, installed);
}

bool IsNewer(Run& run, const std::string& installed, const std::string& required) {
  return IsNewerVersion(run, installed, required);
}

bool IsNotNewer(Run& run, const std::string& installed, const std::string& required) {
  return !IsNewer(run, installed, required);
}

bool IsNotOlder(Run& run, const std::string& installed, const std::string& required) {
  return !IsOlder(run, installed, required);
}

// Any other operator holds.
constexpr VersionOperator versionOperators[] = {
    {"<>", ConditionError::NotEqual, IsOther},
    {"<", ConditionError::Less, IsOlder},
    {">", ConditionError::Greater, IsNewer},
    {"<=", ConditionError::LessOrEqual, IsNotNewer},
    {"=<", ConditionError::LessOrEqual, IsNotNewer},
    {">=", ConditionError::GreaterOrEqual, IsNotOlder},
    {"=>", ConditionError::GreaterOrEqual, IsNotOlder},
};

std::vector<std::string> QuotedValues(const std::string& text) {
  std::vector<std::string> values;
  std::size_t open = text.find('"');
  while (open != std::string::npos) {
    const std::size_t close = text.find('"', open + 1);
    if (close == std::string::npos) break;
    values.push_back(text.substr(open + 1, close - open - 1));
    open = text.find('"', close + 1);
  }
  return values;
}

void RequireOutcome(Run& run, const Condition& condition) {
  const std::string recorded =
      modRegistry::ReadOrEmpty(run, ComponentKey(run.productName, condition.name), Value::ProcessReturn);
  run.log.Log(Source, 0, "Process Return = " + recorded);
  const std::vector<std::string> expected = QuotedValues(condition.operand);
  run.log.Log(Source, 0, "Number of process returns = " + std::to_string(expected.size()));
  run.log.Log(Source, 0, "Required = " + condition.operand);
  for (const std::string& value : expected) run.log.Log(Source, 0, "Parameter = " + value);
  Require(std::find(expected.begin(), expected.end(), recorded) != expected.end(), ConditionError::Named, OlderMessage);
}

std::string InstalledVersion(const Run& run, const std::string& productName) {
  const auto found = std::find_if(
      run.installedProducts.begin(), run.installedProducts.end(),
      [&](const InstalledProduct& product) { return !product.name.empty() && LowerCase(product.name) == productName; });
  return found == run.installedProducts.end() ? "v0.0.0.0" : found->version;
}

}  // namespace

const std::string& SystemName(Run& run) {
  if (run.operatingSystem.size() < 2) run.operatingSystem = run.fso.OperatingSystem();
  return run.operatingSystem;
}

void RequireCondition(Run& run, const Condition& condition) {
  const auto* rule = std::find_if(std::begin(rules), std::end(rules),
                                  [&](const Rule& candidate) { return condition.name == candidate.keyword; });
  if (rule == std::end(rules)) {
    RequireProductVersion(run, condition);
  } else {
    Require(rule->holds(run, condition), ConditionError::Named, rule->message);
  }
}

void RequireOlderCondition(Run& run, const Condition& condition) {
  const auto* rule = std::find_if(std::begin(rules), std::end(rules),
                                  [&](const Rule& candidate) { return IsOlderName(candidate, condition.name); });
  if (rule == std::end(rules)) {
    RequireOutcome(run, condition);
  } else {
    Require(rule->olderHolds(run, condition), ConditionError::Named, rule->olderMessage);
  }
}

void RequireProductVersion(Run& run, const Condition& condition) {
  const std::string installed = InstalledVersion(run, condition.name);
  const std::string required = WithoutQuotes(condition.operand);
  const std::string& op = condition.op;
  run.log.Log(Source, 0, "Version = " + installed);
  // The message of "=" tells the operator first; the others tell it between the versions, with two blanks before "not".
  if (op == "=") {
    Require(required == installed, ConditionError::Equal,
            "Condition " + op + " " + required + " " + installed + " not satisfied.");
    return;
  }
  const std::string message = "Condition " + installed + " " + op + " " + required + " " + " not satisfied.";
  for (const VersionOperator& row : versionOperators) {
    if (op == row.op) Require(row.holds(run, installed, required), row.errorNumber, message);
  }
}
