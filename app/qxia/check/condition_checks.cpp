// QX401 to QX410, QX413: conditions.
#include <algorithm>
#include <map>

#include "app/qxia/check/checks.h"
#include "app/qxia/check/condition_logic.h"
#include "app/qxia/check/known_keys.h"
#include "base/operating_systems.h"
#include "base/text.h"

namespace qxia::check {
namespace {

using assistant::EqualIgnoringCase;

/// The checks of one component's conditions.
class ConditionCheck {
 public:
  ConditionCheck(const MediaModel& media, const ComponentFact& component, Findings& findings)
      : media_(media), component_(component), findings_(findings) {}

  void run() {
    checkNumbers();
    for (const ConditionFact& fact : component_.conditions) checkOne(fact);
    checkTogether();
  }

 private:
  void tell(int rule, int line, const std::string& text, const std::string& fix = "") {
    findings_.add(rule, *component_.ini, line, text, fix);
  }

  void checkNumbers() {
    const IniEntry* single = FindEntry(*component_.section, "Condition");
    bool switchedOff = false;
    std::vector<bool> given(component_.section->entries.size() + 2);
    for (const IniEntry& entry : component_.section->entries) {
      const auto number = static_cast<std::size_t>(NumberOf(entry.key, "Condition"));
      if (!entry.hasEquals || number == 0) continue;
      switchedOff = single != nullptr;
      if (number < given.size()) given[number] = !entry.value.empty();
    }
    if (switchedOff)
      return tell(408, single->line, "Condition=" + single->value + " switches the numbered conditions off.");
    for (const IniEntry& entry : component_.section->entries) {
      const auto number = static_cast<std::size_t>(NumberOf(entry.key, "Condition"));
      if (!entry.hasEquals || number == 0 || entry.value.empty()) continue;
      const bool isReached =
          number < given.size() && std::all_of(given.begin() + 1, given.begin() + static_cast<std::ptrdiff_t>(number),
                                               [](bool is) { return is; });
      if (!isReached) tell(410, entry.line, entry.key + " is never read: a number before it is missing or empty.");
    }
  }

  void checkOne(const ConditionFact& fact) {
    if (fact.condition.name.empty()) return tell(401, fact.line, Told(fact.text) + " is no condition.");
    if (IsReplaced(component_, fact))
      return tell(409, fact.line, "A later condition named " + fact.condition.name + " replaces this one.");
    const std::string keyword = KeywordOf(component_, fact);
    checkOperator(fact, keyword);
    if (keyword == "os") checkKeywords(fact);
    if (keyword == "runoninstall" && assistant::ContainsIgnoringCase(fact.condition.operand, "false"))
      tell(403, fact.line, fact.text + " never holds: the component is installed nowhere.");
    if (IsOutcome(component_, fact)) checkOutcome(fact);
    if (IsProductVersion(component_, fact)) checkProduct(fact);
  }

  void checkOperator(const ConditionFact& fact, const std::string& keyword) {
    const std::string& op = fact.condition.op;
    const bool isOutcome = IsOutcome(component_, fact);
    const bool isNamed = !keyword.empty() && keyword != "runonuninstall";
    const bool ignoresAll = isOutcome || keyword == "runoninstall";
    if ((ignoresAll && op != "=") || (isNamed && op != "=" && op != "<>"))
      tell(413, fact.line, "The operator " + op + " means nothing in " + fact.text + ".");
    const auto valid = {"=", "<>", "<", ">", "<=", "=<", ">=", "=>"};
    if (!isNamed && !isOutcome && std::find(valid.begin(), valid.end(), op) == valid.end())
      tell(413, fact.line, "The operator " + op + " in " + fact.text + " is none: the condition always holds.",
           "Write one of =, <>, <, >, <= and >=.");
  }

  bool checkKeywords(const ConditionFact& fact) {
    std::vector<std::string> known;
    for (const assistant::OperatingSystem& system : assistant::OperatingSystems())
      known.emplace_back(fact.isQuoted ? system.olderKeyword : system.keyword);
    std::vector<std::string> given = QuotedTexts(fact.condition.operand);
    if (!fact.isQuoted) given = assistant::Split(fact.condition.operand, '|');
    for (const std::string& text : given) {
      const std::string word = assistant::Trim(assistant::WithoutQuotes(text));
      if (isKeyword(fact, known, word)) continue;
      hasUnknownKeyword_ = true;
      const std::string nearest = NearestWord(word, known);
      tell(402, fact.line, Told(word) + " names none of the systems.",
           nearest.empty() ? "" : "Write " + nearest + ", or another keyword.");
    }
    return hasUnknownKeyword_;
  }

  static bool isKeyword(const ConditionFact& fact, const std::vector<std::string>& known, const std::string& word) {
    return std::any_of(known.begin(), known.end(), [&](const std::string& keyword) {
      return fact.isQuoted ? assistant::Contains(word, keyword) : EqualIgnoringCase(word, keyword);
    });
  }

  const ComponentFact* named(const std::string& name) const {
    for (const ComponentFact* other : media_.components())
      if (EqualIgnoringCase(assistant::Trim(other->name), name)) return other;
    return nullptr;
  }

  std::vector<std::string> componentNames() const {
    std::vector<std::string> names;
    for (const ComponentFact* other : media_.components()) names.push_back(other->name);
    return names;
  }

  void checkOutcome(const ConditionFact& fact) {
    const ComponentFact* other = named(fact.condition.name);
    if (other == nullptr) {
      const std::string nearest = NearestWord(fact.condition.name, componentNames());
      return tell(406, fact.line, "There is no component " + fact.condition.name + " whose outcome could be asked for.",
                  nearest.empty() ? "" : "Write " + nearest + ", or the name of another component.");
    }
    if (other->place >= component_.place) return tellLater(fact, other->name);
    const std::vector<std::string> wanted = QuotedTexts(fact.condition.operand);
    const auto isOutcome = [](const std::string& text) {
      return text == "Pass" || text == "Fail" || text == "Abort" || text.empty();
    };
    if (std::none_of(wanted.begin(), wanted.end(), isOutcome))
      tell(403, fact.line, fact.text + " never holds: an outcome is Pass, Fail or Abort, in these letters.");
  }

  void tellLater(const ConditionFact& fact, const std::string& other) {
    tell(407, fact.line,
         fact.text + " depends on " + other + ", which comes " +
             (EqualIgnoringCase(other, component_.name) ? "at the same place." : "later."));
  }

  void checkProduct(const ConditionFact& fact) {
    bool isThere = false;
    bool allRead = true;
    const ComponentFact* later = nullptr;
    for (const ComponentFact* other : media_.components()) {
      allRead = allRead && other->packageDefect.empty();
      if (!other->package || !EqualIgnoringCase(other->package->productName, fact.condition.name)) continue;
      isThere = true;
      later = other->place > component_.place ? other : nullptr;
    }
    if (!isThere && allRead) tellUnknownProduct(fact);
    const auto operand = VersionNumbers(VersionOperand(fact));
    if (!operand) return;
    const bool isZero = CompareVersions(*operand, {0}) == 0;
    const std::string& op = fact.condition.op;
    const bool wantsIt = op == ">" || ((op == "=" || op == ">=" || op == "=>") && !isZero);
    if (later != nullptr && wantsIt) tellLater(fact, later->name);
    checkZero(fact, isZero);
  }

  void tellUnknownProduct(const ConditionFact& fact) {
    std::vector<std::string> names;
    for (const ComponentFact* other : media_.components())
      if (other->package) names.push_back(other->package->productName);
    const std::string nearest = NearestWord(fact.condition.name, names);
    tell(405, fact.line, "No package of the media is called " + fact.condition.name + ".",
         nearest.empty() ? "" : "If the product is one of these media, write " + nearest + ".");
  }

  /// A product that is not installed has version 0.0.0.0, and no version is below that.
  void checkZero(const ConditionFact& fact, bool isZero) {
    const std::string& op = fact.condition.op;
    const std::string operand = VersionOperand(fact);
    const bool isMarked = !operand.empty() && (operand.front() == 'v' || operand.front() == 'V');
    if (isZero && op == "<") tell(403, fact.line, fact.text + " never holds: no version is below 0.0.0.0.");
    if (isZero && (op == ">=" || op == "=>"))
      tell(404, fact.line, fact.text + " always holds: a product that is not installed has version 0.0.0.0.");
    if (component_.isOlder || !isMarked || isZero) return;
    if (op == "=")
      tell(403, fact.line, fact.text + " never holds: Windows Installer tells versions without a v.",
           "Write the version without the v.");
    if (op == "<>")
      tell(404, fact.line, fact.text + " always holds: Windows Installer tells versions without a v.",
           "Write the version without the v.");
  }

  void checkTogether() {
    const ConditionFact* last = nullptr;
    Systems others = AllSystems();
    Systems admitted = AllSystems();
    for (const ConditionFact& fact : component_.conditions) {
      if (KeywordOf(component_, fact) != "os" || IsReplaced(component_, fact)) continue;
      others = admitted;
      admitted &= AdmittedBy(component_, fact);
      last = &fact;
    }
    const Systems eight = AllSystems() >> 1;
    if (last != nullptr && !hasUnknownKeyword_) {
      if ((admitted & eight) == 0)
        tell(403, last->line,
             (others & eight) == eight ? last->text + " admits none of the systems."
                                       : "The conditions admit no system together.");
      if ((admitted & eight) == eight) tell(404, last->line, last->text + " admits every system.");
    }
    checkVersionsTogether();
  }

  /// Only the older notation may ask twice for one product.
  void checkVersionsTogether() {
    std::map<std::string, std::vector<const ConditionFact*>> byProduct;
    for (const ConditionFact& fact : component_.conditions)
      if (component_.isOlder && IsProductVersion(component_, fact) && VersionNumbers(VersionOperand(fact)))
        byProduct[assistant::LowerCase(fact.condition.name)].push_back(&fact);
    for (const auto& [product, facts] : byProduct)
      for (const ConditionFact* low : facts)
        for (const ConditionFact* high : facts)
          if (contradict(*low, *high))
            return tell(403, high->line,
                        assistant::Trim(low->text) + " and " + assistant::Trim(high->text) + " never hold together.");
  }

  static bool contradict(const ConditionFact& low, const ConditionFact& high) {
    const std::string& opOfLow = low.condition.op;
    const std::string& opOfHigh = high.condition.op;
    const bool isLow = opOfLow == ">" || opOfLow == ">=" || opOfLow == "=>" || opOfLow == "=";
    const bool isHigh = opOfHigh == "<" || opOfHigh == "<=" || opOfHigh == "=<" || opOfHigh == "=";
    if (!isLow || !isHigh || &low == &high) return false;
    const int order = CompareVersions(*VersionNumbers(VersionOperand(low)), *VersionNumbers(VersionOperand(high)));
    return order > 0 || (order == 0 && (opOfLow == ">" || opOfHigh == "<"));
  }

  const MediaModel& media_;
  const ComponentFact& component_;
  Findings& findings_;
  bool hasUnknownKeyword_ = false;
};

}  // namespace

void CheckConditions(const MediaModel& media, Findings& findings) {
  for (const ComponentFact* component : media.components())
    if (component->section != nullptr) ConditionCheck(media, *component, findings).run();
}

}  // namespace qxia::check
