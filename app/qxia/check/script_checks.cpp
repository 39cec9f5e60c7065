// QX218, QX219, QX805, QX806: what scripts, programs and packages ask of a person and of the machine.
#include "app/qxia/check/checks.h"
#include "app/qxia/check/condition_logic.h"
#include "app/qxia/check/script_facts.h"
#include "base/text.h"

namespace qxia::check {
namespace {

/// Where a finding about a file stands: the line that names it.
struct NamedFile {
  const SourceIni& ini;
  int line;
  std::string name;
};

void TellRestart(const MediaModel& media, const NamedFile& file, const ComponentFact* component, Findings& findings) {
  const bool asksForSystems = component != nullptr && AsksForSystems(*component);
  if (asksForSystems && (AdmittedSystems(*component) & SystemsWithoutStartup()) != 0)
    return findings.add(806, file.ini, file.line,
                        file.name + " restarts the machine, and its conditions admit Windows NT 3.51.");
  const SourceIni* application = media.discs.front().application;
  if (assistant::IsTrue(application->value("Config", "RequestLogonDetails"))) return;
  findings.add(805, file.ini, file.line, file.name + " restarts the machine, and nothing logs on again by itself.");
}

void CheckScript(const MediaModel& media, const NamedFile& file, const ScriptFacts& facts,
                 const ComponentFact* component, Findings& findings) {
  if (!facts.question.empty())
    findings.add(218, file.ini, file.line, file.name + " waits for a person: " + facts.question + ".");
  if (!facts.madeBy.empty() && !facts.isSilent)
    findings.add(219, file.ini, file.line,
                 file.name + " was made by " + facts.madeBy + ", and CommandLine has no silent switch of that tool.",
                 "Add one of its silent switches to CommandLine: " + facts.silentSwitches + ".");
  if (facts.asksForRestart) TellRestart(media, file, component, findings);
}

void CheckComponent(const MediaModel& media, const ComponentFact& component, Findings& findings) {
  if (component.section == nullptr || component.install.empty() || !component.isRun()) return;
  const NamedFile file{*component.ini, component.lineOf("Install"), component.install};
  CheckScript(media, file, LookInto(component.found, component.install, component.value("CommandLine")), &component,
              findings);
  if (component.package && component.package->asksForRestart) TellRestart(media, file, &component, findings);
}

}  // namespace

void CheckScripts(const MediaModel& media, Findings& findings) {
  for (const ComponentFact* component : media.components()) CheckComponent(media, *component, findings);
  for (const Disc& disc : media.discs) {
    for (const ActionFact& action : disc.actions) {
      if (action.section == nullptr || action.install.empty()) continue;
      const IniEntry* arguments = FindEntry(*action.section, "CommandLine");
      const ScriptFacts facts = LookInto(action.found, action.install, arguments == nullptr ? "" : arguments->value);
      CheckScript(media, {*disc.product, disc.product->lineOf(action.section->name, "Install"), action.install}, facts,
                  nullptr, findings);
    }
  }
}

}  // namespace qxia::check
