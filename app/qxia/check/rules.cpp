#include "app/qxia/check/rules.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "app/qxia/check/rule_rows.h"

namespace qxia::check {
namespace {

struct Topic {
  int hundreds;
  const char* title;
};

constexpr Topic Topics[] = {
    {1, "Text and keys"},
    {2, "Files and components"},
    {3, "Versions"},
    {4, "Conditions and types of machine"},
    {5, "Copies, room and shares"},
    {6, "Removal"},
    {7, "Several discs"},
    {8, "Silent runs, restarts and passwords"},
    {9, "Comments that allow findings"},
};

constexpr const char* PageHead = R"(# Checks

What `qxia check` looks for on installation media, rule by rule. How it is used is told in [qxia.md](qxia.md#check); what the keys
mean, in the [ini reference](ini-reference.md). `qxia check --explain QX105` prints one rule.

- An **error** fails, or does something else than written, on a machine that the media are meant for.
- A **warning** probably surprises somebody.
- A **note** is good to know.

A comment line `; qxia: allow QX105 reason` directly above a line permits that finding there.

This page is written by `scripts/checks-doc` from the table of rules.
)";

std::string Indented(const std::string& text) {
  std::string indented = "    ";
  for (const char c : text) {
    indented += c;
    if (c == '\n') indented += "    ";
  }
  return indented;
}

std::string Section(const Rule& rule) {
  return "\n### " + RuleName(rule.number) + ": " + rule.title + "\n\n**" + NameOf(rule.severity) + ".** " + rule.why +
         " " + rule.remedy + "\n\nWrong:\n\n" + Indented(rule.wrong) + "\n\nRight:\n\n" + Indented(rule.right) + "\n";
}

std::string TableOfRules() {
  std::string table = "\n| rule | severity | what |\n|---|---|---|\n";
  for (const Rule& rule : Rules())
    table += "| " + RuleName(rule.number) + " | " + NameOf(rule.severity) + " | " + rule.title + " |\n";
  return table;
}

}  // namespace

const char* NameOf(Severity severity) {
  if (severity == Severity::Error) return "error";
  return severity == Severity::Warning ? "warning" : "note";
}

std::span<const Rule> Rules() {
  static const std::vector<Rule> all = [] {
    std::vector<Rule> rows;
    for (const std::span<const Rule> part : RuleRows()) rows.insert(rows.end(), part.begin(), part.end());
    return rows;
  }();
  return all;
}

const Rule* FindRule(int number) {
  const std::span<const Rule> rules = Rules();
  const auto found = std::find_if(rules.begin(), rules.end(), [&](const Rule& rule) { return rule.number == number; });
  return found == rules.end() ? nullptr : &*found;
}

int RuleNumber(const std::string& text) {
  constexpr std::size_t length = 5;
  if (text.size() != length || text.substr(0, 2) != "QX") return 0;
  const std::string digits = text.substr(2);
  return digits.find_first_not_of("0123456789") == std::string::npos ? std::atoi(digits.c_str()) : 0;
}

std::string RuleName(int number) {
  return "QX" + std::to_string(number);
}

std::string Explanation(const Rule& rule) {
  return RuleName(rule.number) + " (" + NameOf(rule.severity) + "): " + rule.title + "\n\n" + rule.why + "\n" +
         rule.remedy + "\n\nWrong:\n\n" + Indented(rule.wrong) + "\n\nRight:\n\n" + Indented(rule.right) + "\n";
}

std::string RulesPage() {
  std::string page = std::string(PageHead) + TableOfRules();
  for (const Topic& topic : Topics) {
    page += std::string("\n## ") + topic.title + "\n";
    for (const Rule& rule : Rules())
      if (rule.number / 100 == topic.hundreds) page += Section(rule);
  }
  return page;
}

}  // namespace qxia::check
