// QX301 to QX304: versions that disagree, or do not compare.
#include <algorithm>

#include "app/qxia/check/checks.h"
#include "app/qxia/check/condition_logic.h"
#include "base/paths.h"
#include "base/record_keys.h"
#include "base/text.h"
#include "exec/version_folders.h"
#include "exec/versions.h"

namespace qxia::check {
namespace {

constexpr std::size_t PartsOfAnyPackage = 3;

void CheckProductVersions(const Disc& disc, Findings& findings) {
  const IniEntry* ofApplication = disc.application->find("Product", "Version");
  const IniEntry* ofProduct = disc.product->find("General", "Version");
  if (ofApplication == nullptr || ofProduct == nullptr || ofApplication->value == ofProduct->value) return;
  findings.add(
      301, *disc.product, ofProduct->line,
      "The product ini is of version " + ofProduct->value + ", the application ini of " + ofApplication->value + ".");
}

/// Versions agree as far as both tell them.
bool Agree(const std::string& a, const std::string& b) {
  const auto numbersOfA = VersionNumbers(a);
  const auto numbersOfB = VersionNumbers(b);
  if (!numbersOfA || !numbersOfB) return assistant::EqualIgnoringCase(a, b);
  const auto length = static_cast<std::ptrdiff_t>(std::min(numbersOfA->size(), numbersOfB->size()));
  return std::equal(numbersOfA->begin(), numbersOfA->begin() + length, numbersOfB->begin());
}

void CheckDelivered(const ComponentFact& component, Findings& findings) {
  const SourceIni& product = *component.disc->product;
  const std::string last = assistant::LastElement(component.path);
  const std::string ofFolder = assistant::IsVersionFolderName(assistant::LowerCase(last)) ? last : "";
  const std::string ofPackage = component.package ? component.package->productVersion : "";
  const std::string& marked = component.entry.version;
  const std::string delivered = ofPackage.empty() ? ofFolder : ofPackage;
  if (!marked.empty() && !delivered.empty() && !Agree(marked, delivered))
    findings.add(302, product, component.listedOn,
                 "RFI Version is " + marked + ", but " + component.name + " is delivered in version " + delivered + ".",
                 "Write RFI Version=" + delivered + ", or deliver that version.");
  if (!ofFolder.empty() && !ofPackage.empty() && !Agree(ofFolder, ofPackage))
    findings.add(
        303, product, component.listedOn,
        "The folder of " + component.name + " is named " + ofFolder + ", its package is of version " + ofPackage + ".");
  if (!ofPackage.empty() && !VersionNumbers(ofPackage))
    findings.add(304, *component.ini, component.lineOf("Install"),
                 "The package's version " + ofPackage + " is no row of numbers.");
}

/// The version of the package that the condition asks for; "" where the media have none of that name.
std::string PackageVersion(const MediaModel& media, const std::string& product) {
  for (const ComponentFact* component : media.components())
    if (component->package && assistant::EqualIgnoringCase(component->package->productName, product))
      return component->package->productVersion;
  return "";
}

void CheckOperand(const MediaModel& media, const ComponentFact& component, const ConditionFact& fact,
                  Findings& findings) {
  const std::string& op = fact.condition.op;
  const std::string operand = VersionOperand(fact);
  if (op == "=" || op == "<>" || !IsProductVersion(component, fact) || IsReplaced(component, fact)) return;
  if (!VersionNumbers(operand))
    return findings.add(304, *component.ini, fact.line,
                        Told(operand) + " in the condition " + fact.text + " is no row of numbers.");
  const std::string installed = PackageVersion(media, fact.condition.name);
  const std::size_t has = assistant::VersionParts(operand).size();
  const std::size_t wanted = installed.empty() ? PartsOfAnyPackage : assistant::VersionParts(installed).size();
  // What is compared with decides how many parts are looked at.
  const bool lacksParts = (op == ">" || op == "<=" || op == "=<") && has < wanted;
  const bool hasSurplus = (op == "<" || op == ">=" || op == "=>") && has > wanted && !installed.empty();
  if (lacksParts || hasSurplus)
    findings.add(304, *component.ini, fact.line,
                 "The condition " + fact.text + " compares " + std::to_string(has) + " numbers with a version of " +
                     std::to_string(wanted) + ".",
                 "Write " + std::to_string(wanted) + " numbers.");
}

}  // namespace

void CheckVersions(const MediaModel& media, Findings& findings) {
  for (const Disc& disc : media.discs) {
    if (disc.application == nullptr || disc.product == nullptr) continue;
    CheckProductVersions(disc, findings);
    for (const ComponentFact& component : disc.components) {
      if (component.section == nullptr) continue;
      CheckDelivered(component, findings);
      for (const ConditionFact& fact : component.conditions) CheckOperand(media, component, fact, findings);
    }
  }
}

}  // namespace qxia::check
