// QX411, QX412: types of machine.
#include <algorithm>

#include "app/qxia/check/checks.h"
#include "app/qxia/check/condition_logic.h"
#include "base/record_keys.h"
#include "base/text.h"
#include "exec/csv.h"
#include "exec/machine_types.h"

namespace qxia::check {
namespace {

bool IsKnownType(const std::string& type) {
  const std::vector<std::string> known = assistant::KnownMachineTypes();
  return std::find(known.begin(), known.end(), type) != known.end() || assistant::Contains(type, "vanilla");
}

std::string NearestQuery(const std::string& type) {
  std::vector<std::string> words = assistant::KnownMachineTypes();
  for (const char* query :
       {"all machines", "all 1st machines", "1st machine", "nth machine", "1st machine (child domain)"})
    words.emplace_back(query);
  return assistant::EqualIgnoringCase(type, assistant::NotApplicable) ? "all machines" : NearestWord(type, words);
}

void CheckQuery(const SourceIni& file, int line, const std::string& query, Findings& findings) {
  if (assistant::AcceptsEveryMachine(query) || query == assistant::MissingValue) return;
  for (const std::string& type : assistant::AcceptedTypes(query)) {
    const std::string plain = assistant::Trim(type);
    if (plain != type) {
      findings.add(412, file, line, Told(type) + " matches no type of machine, because of its blank.");
    } else if (!IsKnownType(type)) {
      const std::string nearest = NearestQuery(type);
      findings.add(411, file, line, Told(type) + " is no type of machine that the program knows.",
                   nearest.empty() ? "" : "Write " + nearest + ".");
    }
  }
}

void CheckTransformTypes(const ComponentFact& component, Findings& findings) {
  const std::string transform = component.value("Transform");
  if (!assistant::Contains(transform, "=")) return;
  for (const std::string& pair : assistant::CsvFields(transform))
    if (assistant::Contains(pair, "="))
      CheckQuery(*component.ini, component.lineOf("Transform"), assistant::Trim(pair.substr(0, pair.find('='))),
                 findings);
}

void CheckComponent(const ComponentFact& component, Findings& findings) {
  CheckQuery(*component.ini, component.lineOf("MachineType"), component.value("MachineType"), findings);
  CheckTransformTypes(component, findings);
  for (const ConditionFact& fact : component.conditions)
    if (KeywordOf(component, fact) == "servertype" && !IsReplaced(component, fact))
      CheckQuery(*component.ini, fact.line, assistant::LowerCase(assistant::WithoutQuotes(fact.condition.operand)),
                 findings);
}

}  // namespace

void CheckMachineTypes(const MediaModel& media, Findings& findings) {
  for (const ComponentFact* component : media.components())
    if (component->section != nullptr) CheckComponent(*component, findings);
  for (const Disc& disc : media.discs) {
    for (const ShareFact& share : disc.shares)
      if (share.parsed.defect.empty())
        CheckQuery(*disc.sharesFile, share.line, share.parsed.share.machineTypes, findings);
    const std::string own =
        disc.product == nullptr ? "" : assistant::LowerCase(disc.product->value("Product", "ServerType"));
    if (!assistant::IsNotGiven(own) && !IsKnownType(own)) {
      const std::string nearest = NearestWord(own, assistant::KnownMachineTypes());
      findings.add(411, *disc.product, disc.product->lineOf("Product", "ServerType"),
                   Told(own) + " is no type of machine that the program knows.",
                   nearest.empty() ? "" : "Write " + nearest + ".");
    }
  }
}

}  // namespace qxia::check
