#include "exec/condition_rules.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "base/component.h"
#include "base/error.h"
#include "base/operating_systems.h"
#include "base/registry.h"
#include "base/text.h"
#include "exec/machine_types.h"
#include "exec/system_check.h"
#include "exec/versions.h"

namespace assistant {
namespace {

constexpr const char* OlderMessage = "Condition not satisfied.";

/// What a rule decides about.
struct Question {
  const Run& run;
  const Procedure& here;
  const Condition& condition;
};

/// "=" wants the fact, "<>" its opposite, and every other operator is content with either.
bool Holds(const std::string& op, bool fact) {
  if (op == "=") return fact;
  return op == "<>" ? !fact : true;
}

/// The condition holds when the text is unknown here or compares as wanted.
bool TextHolds(const std::string& op, const std::string& installed, const std::string& required) {
  return installed.empty() || Holds(op, installed == required);
}

bool ProductNameHolds(const Question& question) {
  return TextHolds(question.condition.op, LowerCase(question.run.record().read(Value::SiteProduct)),
                   LowerCase(WithoutQuotes(question.condition.operand)));
}

bool ServerTypeHolds(const Question& question) {
  const std::string& op = question.condition.op;
  const std::string query = LowerCase(WithoutQuotes(question.condition.operand));
  if (query.size() < 2 || (op != "=" && op != "<>")) return true;
  return Holds(op, IsValidMachine(question.run, query));
}

bool BuildNumberHolds(const Question& question) {
  return TextHolds(question.condition.op, question.run.record().read(Value::ServerBuildVersion),
                   WithoutQuotes(question.condition.operand));
}

bool InstalledProductsHolds(const Question& question) {
  const ProductRecord record(question.run.services, WithoutQuotes(question.condition.operand));
  return Holds(question.condition.op, !record.read(Value::Version).empty());
}

/// "<>" inverts the match; an operator that means nothing here is told and passed over.
bool OsHolds(const Question& question, bool matched) {
  const std::string& op = question.condition.op;
  if (op == "<>") return !matched;
  if (op != "=") question.here.warn("Unrecognised OS operator (" + op + ")");
  return matched;
}

bool CurrentOsHolds(const Question& question) {
  const std::vector<std::string> keywords = Split(question.condition.operand, '|');
  const bool matched = std::any_of(keywords.begin(), keywords.end(), [&](const std::string& keyword) {
    return IsValidOS(question.run, WithoutQuotes(keyword));
  });
  return OsHolds(question, matched);
}

bool OlderOsHolds(const Question& question) {
  const OperatingSystem* system = FindOperatingSystem(SystemName(question.run));
  return OsHolds(question, system != nullptr && Contains(question.condition.operand, system->olderKeyword));
}

bool RunOnInstallHolds(const Question& question) {
  return !ContainsIgnoringCase(question.condition.operand, "false");
}

/// The older notation finds most keywords anywhere in a name.
enum class OlderName { HoldsKeyword, IsKeyword };

struct Rule {
  const char* keyword;
  OlderName olderName;
  bool (*holds)(const Question&);
  const char* message;
  bool (*olderHolds)(const Question&);
  const char* olderMessage;
};

// In the order in which the older notation looks for them in a name.
constexpr Rule Rules[] = {
    {"productname", OlderName::HoldsKeyword, ProductNameHolds, "Condition not satisfied - Product Name does not match.",
     ProductNameHolds, OlderMessage},
    {"servertype", OlderName::HoldsKeyword, ServerTypeHolds, "Condition not satisfied - Server Type does not match.",
     ServerTypeHolds, "Condition not satisfied - Server Type does not match."},
    {"buildnumber", OlderName::HoldsKeyword, BuildNumberHolds,
     "Condition not satisfied - Server Build Number does not match.", BuildNumberHolds, OlderMessage},
    {"installedproducts", OlderName::HoldsKeyword, InstalledProductsHolds,
     "Condition not satisfied - Installed Product", InstalledProductsHolds,
     "Condition not satisfied - Installed Product"},
    {"os", OlderName::IsKeyword, CurrentOsHolds, "Condition not satisfied - OS not supported.", OlderOsHolds,
     "Condition not satisfied - OS not supported."},
    {"runoninstall", OlderName::HoldsKeyword, RunOnInstallHolds,
     "Condition not satisfied - Component cannot be installed.", RunOnInstallHolds,
     "Condition not satisfied - Component cannot be installed."},
};

bool IsOlderName(const Rule& rule, const std::string& name) {
  return rule.olderName == OlderName::IsKeyword ? EqualIgnoringCase(name, rule.keyword)
                                                : ContainsIgnoringCase(name, rule.keyword);
}

const Rule* FindRule(const std::string& name) {
  const auto* rule = std::find_if(std::begin(Rules), std::end(Rules),
                                  [&](const Rule& candidate) { return name == candidate.keyword; });
  return rule == std::end(Rules) ? nullptr : rule;
}

const Rule* FindOlderRule(const std::string& name) {
  const auto* rule = std::find_if(std::begin(Rules), std::end(Rules),
                                  [&](const Rule& candidate) { return IsOlderName(candidate, name); });
  return rule == std::end(Rules) ? nullptr : rule;
}

void Require(const Procedure& here, bool holds, int errorNumber, const std::string& message) {
  if (!holds) throw Error(errorNumber, message, here.name());
}

struct TwoVersions {
  clsAppLog& log;
  const std::string& installed;
  const std::string& required;
};

bool IsOther(const TwoVersions& versions) {
  return versions.installed != versions.required;
}

bool IsOlder(const TwoVersions& versions) {
  return IsNewerVersion(versions.log, versions.required, versions.installed);
}

bool IsNewer(const TwoVersions& versions) {
  return IsNewerVersion(versions.log, versions.installed, versions.required);
}

bool IsNotNewer(const TwoVersions& versions) {
  return !IsNewer(versions);
}

bool IsNotOlder(const TwoVersions& versions) {
  return !IsOlder(versions);
}

struct VersionOperator {
  const char* op;
  int errorNumber;
  bool (*holds)(const TwoVersions&);
};

// Any other operator holds.
constexpr VersionOperator VersionOperators[] = {
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

void RequireOutcome(const Question& question) {
  const auto& [run, here, condition] = question;
  const std::string recorded = modRegistry::ReadOrEmpty(
      run.machine.registry(), ComponentKey(run.product.name, condition.name), ComponentValue::ProcessReturn);
  here.action("Process Return = " + recorded);
  const std::vector<std::string> expected = QuotedValues(condition.operand);
  here.action("Number of process returns = " + std::to_string(expected.size()));
  here.action("Required = " + condition.operand);
  for (const std::string& value : expected) here.action("Parameter = " + value);
  const bool holds = std::find(expected.begin(), expected.end(), recorded) != expected.end();
  Require(here, holds, ConditionError::Named, OlderMessage);
}

std::string InstalledVersion(const InstalledProducts& installed, const std::string& productName) {
  const auto found = std::find_if(installed.list.begin(), installed.list.end(), [&](const InstalledProduct& product) {
    return !product.name.empty() && LowerCase(product.name) == productName;
  });
  return found == installed.list.end() ? "v0.0.0.0" : found->version;
}

}  // namespace

const char* KeywordOf(const std::string& name) {
  const Rule* rule = FindRule(name);
  return rule == nullptr ? nullptr : rule->keyword;
}

const char* OlderKeywordOf(const std::string& name) {
  const Rule* rule = FindOlderRule(name);
  return rule == nullptr ? nullptr : rule->keyword;
}

void RequireCondition(const Surroundings& surroundings, const Procedure& here, const Condition& condition) {
  const Rule* rule = FindRule(condition.name);
  if (rule == nullptr) return RequireProductVersion(surroundings, here, condition);
  Require(here, rule->holds({surroundings.run, here, condition}), ConditionError::Named, rule->message);
}

void RequireOlderCondition(const Surroundings& surroundings, const Procedure& here, const Condition& condition) {
  const Question question{surroundings.run, here, condition};
  const Rule* rule = FindOlderRule(condition.name);
  if (rule == nullptr) return RequireOutcome(question);
  Require(here, rule->olderHolds(question), ConditionError::Named, rule->olderMessage);
}

void RequireProductVersion(const Surroundings& surroundings, const Procedure& here, const Condition& condition) {
  const std::string installed = InstalledVersion(surroundings.installed, condition.name);
  const std::string required = WithoutQuotes(condition.operand);
  const std::string& op = condition.op;
  here.action("Version = " + installed);
  // The message of "=" tells the operator first; the others tell it between the versions, with two blanks before "not".
  if (op == "=") {
    return Require(here, required == installed, ConditionError::Equal,
                   "Condition " + op + " " + required + " " + installed + " not satisfied.");
  }
  const std::string message = "Condition " + installed + " " + op + " " + required + " " + " not satisfied.";
  const TwoVersions versions{here.log(), installed, required};
  for (const VersionOperator& row : VersionOperators) {
    if (op == row.op) Require(here, row.holds(versions), row.errorNumber, message);
  }
}

}  // namespace assistant
