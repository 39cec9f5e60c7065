// QX214 to QX217: kinds of file and packages.
#include <map>

#include "app/qxia/check/checks.h"
#include "app/qxia/check/condition_logic.h"
#include "base/paths.h"
#include "base/text.h"

namespace qxia::check {
namespace {

void CheckKind(const ComponentFact& component, Findings& findings) {
  if (component.install.empty() || !component.isRun()) return;
  const int line = component.lineOf("Install");
  if (component.kind == nullptr)
    return findings.add(214, *component.ini, line, component.install + " is of a kind that the program cannot run.");
  const std::string extension = assistant::Extension(component.install);
  if (component.kind->letterCase == assistant::LetterCase::Lower && extension != component.kind->extension)
    findings.add(215, *component.ini, line,
                 "The exit code of " + component.install + " never counts, as its extension is not in small letters.");
}

void CheckPlatform(const ComponentFact& component, Findings& findings) {
  if (!component.package || !component.package->isFor64Bit()) return;
  if ((AdmittedSystems(component) & ~SystemsWith64Bits()) == 0) return;
  findings.add(217, *component.ini, component.lineOf("Install"),
               "The package " + component.install + " is for 64-bit systems, and 32-bit systems are admitted.");
}

}  // namespace

void CheckComponents(const MediaModel& media, Findings& findings) {
  std::map<std::string, const ComponentFact*> byCode;
  for (const ComponentFact* component : media.components()) {
    if (component->section == nullptr) continue;
    CheckKind(*component, findings);
    if (!component->isRun() || !component->package) continue;
    CheckPlatform(*component, findings);
    const auto [first, isNew] = byCode.emplace(assistant::UpperCase(component->package->productCode), component);
    if (!isNew)
      findings.add(216, *component->ini, component->lineOf("Install"),
                   "The package " + component->install + " has the product code of component " + first->second->name +
                       ", " + first->first + ".");
  }
}

}  // namespace qxia::check
