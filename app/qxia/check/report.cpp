#include "app/qxia/check/report.h"

#include <cctype>
#include <map>
#include <nlohmann/json.hpp>

#include "app/qxia/result.h"

namespace qxia::check {
namespace {

using Json = nlohmann::ordered_json;

constexpr int JsonIndent = 2;

std::string Plural(int count, const std::string& word) {
  return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

std::string Written(const Json& form) {
  return form.dump(JsonIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

/// A path as a relative reference: what may not stand in one is written as %XX.
std::string AsUri(const std::string& path) {
  constexpr std::string_view plain = "-._~/";
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string uri;
  for (const char c : ToUtf8(path)) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80 && (std::isalnum(byte) != 0 || plain.find(c) != std::string_view::npos)) {
      uri += c;
    } else {
      uri += {'%', digits[byte >> 4U], digits[byte & 0xFU]};
    }
  }
  return uri;
}

Json RuleAsSarif(const Rule& rule) {
  return {{"id", RuleName(rule.number)},
          {"shortDescription", {{"text", rule.title}}},
          {"fullDescription", {{"text", rule.why}}},
          {"help", {{"text", rule.remedy}}},
          {"defaultConfiguration", {{"level", NameOf(rule.severity)}}}};
}

Json ResultAsSarif(const Finding& finding, int ruleIndex) {
  const Json region = {{"startLine", finding.line}};
  const Json place = {{"artifactLocation", {{"uri", AsUri(finding.file->shown())}}}, {"region", region}};
  return {{"ruleId", RuleName(finding.rule)},
          {"ruleIndex", ruleIndex},
          {"level", NameOf(FindRule(finding.rule)->severity)},
          {"message", {{"text", ToUtf8(finding.text + " Fix: " + finding.fix)}}},
          {"locations", Json::array({{{"physicalLocation", place}}})}};
}

}  // namespace

Counts CountOf(const Findings& findings) {
  Counts counts;
  for (const Finding& finding : findings.all()) {
    const Severity severity = FindRule(finding.rule)->severity;
    ++(severity == Severity::Error ? counts.errors : severity == Severity::Warning ? counts.warnings : counts.notes);
  }
  return counts;
}

std::string AsText(const Findings& findings, int permitted) {
  std::string text;
  for (const Finding& finding : findings.all())
    text += finding.file->shown() + ":" + std::to_string(finding.line) + ": " +
            NameOf(FindRule(finding.rule)->severity) + " " + RuleName(finding.rule) + ": " + ToUtf8(finding.text) +
            "\n    fix: " + ToUtf8(finding.fix) + "\n";
  const Counts counts = CountOf(findings);
  text +=
      Plural(counts.errors, "error") + ", " + Plural(counts.warnings, "warning") + ", " + Plural(counts.notes, "note");
  return text + (permitted == 0 ? "" : " (" + std::to_string(permitted) + " allowed by comments)") + "\n";
}

std::string AsJson(const Findings& findings) {
  Json list = Json::array();
  for (const Finding& finding : findings.all())
    list.push_back({{"path", ToUtf8(finding.file->shown())},
                    {"line", finding.line},
                    {"severity", NameOf(FindRule(finding.rule)->severity)},
                    {"rule", RuleName(finding.rule)},
                    {"text", ToUtf8(finding.text)},
                    {"fix", ToUtf8(finding.fix)}});
  const Counts counts = CountOf(findings);
  const Json form = {{"format", 1},
                     {"findings", list},
                     {"counts", {{"error", counts.errors}, {"warning", counts.warnings}, {"note", counts.notes}}}};
  return Written(form);
}

std::string AsSarif(const Findings& findings, const std::string& version) {
  Json rules = Json::array();
  std::map<int, int> indices;
  for (const Rule& rule : Rules()) {
    indices[rule.number] = static_cast<int>(rules.size());
    rules.push_back(RuleAsSarif(rule));
  }
  Json results = Json::array();
  for (const Finding& finding : findings.all()) results.push_back(ResultAsSarif(finding, indices[finding.rule]));
  const Json driver = {{"name", "qxia check"}, {"version", version}, {"rules", rules}};
  const Json run = {{"tool", {{"driver", driver}}}, {"columnKind", "utf16CodeUnits"}, {"results", results}};
  const Json log = {
      {"$schema", "https://json.schemastore.org/sarif-2.1.0.json"}, {"version", "2.1.0"}, {"runs", Json::array({run})}};
  return Written(log);
}

}  // namespace qxia::check
