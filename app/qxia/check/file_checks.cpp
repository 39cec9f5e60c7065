// QX201 to QX213, QX241 to QX243: what the inis name must be on the disc.
#include "app/qxia/check/checks.h"
#include "app/qxia/result.h"
#include "base/paths.h"
#include "base/record_keys.h"
#include "base/text.h"
#include "core/coded_paths.h"
#include "core/discovery.h"
#include "exec/csv.h"

namespace qxia::check {
namespace {

using assistant::Contains;

/// Where a name of the media stands, and what it leads to.
struct Reference {
  const SourceIni& file;
  int line;
  std::string written;  ///< as the ini spells it
  const Found& found;
};

/// True when the last elements of what was found are spelt otherwise than the ini writes them.
bool IsSpeltOtherwise(const Reference& reference) {
  const std::string shown = assistant::Replace(reference.found.shown, "/", "\\");
  std::string written = ToUtf8(assistant::Normalised(reference.written));
  while (!written.empty() && (written.front() == '\\' || written.front() == '.')) written.erase(0, 1);
  return reference.found.is == Found::Is::OtherCase && assistant::EndsWithIgnoringCase(shown, written) &&
         !shown.ends_with(written);
}

/// Tells what is wrong with a name, by the rule of what is missing. True when it leads to a file.
bool CheckReference(const Reference& reference, int missingRule, const std::string& what, Findings& findings) {
  if (reference.found.is == Found::Is::OutOfMedia) {
    findings.add(205, reference.file, reference.line,
                 what + " " + reference.written + " is a link that leads out of the media.");
    return false;
  }
  if (!reference.found.isFile()) {
    findings.add(missingRule, reference.file, reference.line, what + " " + reference.written + " is not on the media.");
    return false;
  }
  if (!reference.found.isReadable && !assistant::EndsWithIgnoringCase(reference.found.shown, ".ini")) {
    findings.add(118, reference.file, reference.line, what + " " + reference.written + " cannot be read.");
    return false;
  }
  if (IsSpeltOtherwise(reference))
    findings.add(202, reference.file, reference.line,
                 what + " " + reference.written + " is spelt " + reference.found.shown + " on the disc.",
                 "Spell it as it is on the disc.");
  return true;
}

std::string PathInCode(const std::string& text) {
  if (assistant::IsFullPath(text)) return assistant::LastElement(text);
  const assistant::CodedPath coded = assistant::TakeApartByLetters(text);
  return Contains(text, "(") ? coded.inner : text;
}

void CheckProductIni(const Disc& disc, Findings& findings) {
  const SourceIni& ini = *disc.application;
  const std::string given = ini.value("Product", "ProductIni");
  if (assistant::IsNotGiven(given)) return;
  CheckReference({ini, ini.lineOf("Product", "ProductIni"), PathInCode(given), disc.productFile}, 206,
                 "The product ini", findings);
}

/// Of several discs, another rule tells that the program's own folder is no root at all.
bool HasIdlePath(const MediaModel& media, const std::string& root) {
  if (assistant::IsFullPath(root) || media.discs.size() > 1) return false;
  const assistant::CodedPath coded = assistant::TakeApartByLetters(root);
  return coded.code == assistant::PathCode::Current && !coded.inner.empty();
}

void CheckPackageRoot(const MediaModel& media, const Disc& disc, Findings& findings) {
  const SourceIni& ini = *disc.application;
  const std::string given = ini.value("Product", "PackageRoot");
  if (assistant::IsNotGiven(given)) return;
  const int line = ini.lineOf("Product", "PackageRoot");
  if (!assistant::CanBeResolved(given))
    return findings.add(208, ini, line, "PackageRoot=" + given + " is neither a full path nor a coded path.");
  if (HasIdlePath(media, given))
    return findings.add(220, ini, line,
                        "PackageRoot=" + given + " is the program's own folder: its path does not count.");
  if (!disc.packageRoot)
    return findings.add(207, ini, line,
                        "The folder of the packages, " + given + ", is not on the media: components were not checked.");
  const Reference reference{ini, line, PathInCode(given), disc.files.look(*disc.packageRoot)};
  if (IsSpeltOtherwise(reference))
    findings.add(202, ini, line,
                 "The folder " + reference.written + " is spelt " + reference.found.shown + " on the disc.");
}

void CheckEntries(const Disc& disc, Findings& findings) {
  const IniSection* actions = disc.product->section("Actions");
  if (disc.components.empty() && disc.passedOver.empty() && disc.product->state() == SourceIni::State::Read) {
    bool hasOther = false;  // a misspelt or indented header says more
    for (const IniSection& section : disc.product->sections())
      hasOther = hasOther || NearestWord(section.name, {"Actions"}) == "Actions";
    if (actions != nullptr || !hasOther)
      findings.add(211, *disc.product, actions == nullptr ? 1 : actions->line, "The product ini lists no components.");
  }
  for (const PassedOverEntry& entry : disc.passedOver) {
    using Why = PassedOverEntry::Why;
    if (entry.why == Why::Empty)
      findings.add(212, *disc.product, entry.line, "Component " + entry.name + " has no ini: it is left out.");
    if (entry.why == Why::Doubled)
      findings.add(213, *disc.product, entry.line,
                   "Component " + entry.name + " is named a second time: this entry is passed over.");
  }
}

bool HasOddHeader(const SourceIni& ini) {
  for (const std::string& line : ini.lines()) {
    if (Contains(line, "\r")) return true;
    const std::size_t text = line.find_first_not_of(" \t");
    if (text != 0 && text != std::string::npos && line[text] == '[') return true;
  }
  return false;
}

void CheckComponentSection(const ComponentFact& component, Findings& findings) {
  const SourceIni& ini = *component.ini;
  const bool hasOddName =
      component.name != assistant::Trim(component.name) || component.name.find('\t') != std::string::npos;
  if (component.section != nullptr || ini.state() != SourceIni::State::Read || hasOddName || HasOddHeader(ini)) return;
  int line = 1;
  std::string other;
  for (const IniSection& section : ini.sections()) {
    if (section.line == 0 || !other.empty()) continue;
    line = section.line;
    other = section.name;
  }
  findings.add(204, ini, line, "There is no section [" + component.name + "] for component " + component.name + ".",
               other.empty() ? "" : "Write [" + component.name + "] in place of [" + other + "].");
}

void CheckTransform(const ComponentFact& component, Findings& findings) {
  const std::string transform = assistant::Given(component.value("Transform"));
  if (transform.empty() || !component.file || !assistant::IsPackage(component.kind)) return;
  for (const std::string& part : assistant::CsvFields(transform)) {
    const std::size_t at = part.find('=');
    if (at == std::string::npos && Contains(transform, "=")) continue;
    const std::string file = assistant::Trim(at == std::string::npos ? part : part.substr(at + 1));
    const auto path = assistant::IsFullPath(file)
                          ? component.disc->onDisc(file)
                          : std::optional(assistant::Joined(assistant::FolderPart(*component.file), file));
    if (path)
      CheckReference({*component.ini, component.lineOf("Transform"), file, component.disc->files.look(*path)}, 210,
                     "The transform", findings);
  }
}

void CheckComponentFiles(const ComponentFact& component, Findings& findings) {
  if (!component.isLookedFor) return;
  const SourceIni& product = *component.disc->product;
  if (!CheckReference({product, component.listedOn, component.entry.name, component.iniFile}, 203, "The component ini",
                      findings))
    return;
  CheckComponentSection(component, findings);
  if (component.section == nullptr || !component.file || !component.isRun()) return;
  const int line = component.lineOf("Install");
  if (!CheckReference({*component.ini, line, component.install, component.found}, 201, "The component's file",
                      findings))
    return;
  if (!component.packageDefect.empty())
    findings.add(209, *component.ini, line,
                 "The package " + component.install + " cannot be read: " + component.packageDefect + ".");
  CheckTransform(component, findings);
}

void CheckActions(const MediaModel& media, const Disc& disc, Findings& findings) {
  for (const ActionFact& action : disc.actions) {
    const std::string section = action.name + "_" + media.productName;
    if (action.section == nullptr && media.productName.empty()) {
      continue;  // the name that the section lacks is told
    }
    if (action.section == nullptr) {
      findings.add(241, *disc.product, action.listedOn,
                   "There is no section [" + section + "] for the pre-install action " + action.name + ".");
    } else if (action.install.empty()) {
      findings.add(242, *disc.product, disc.product->lineOf(section, "Install"),
                   "The pre-install action " + action.name + " has no Install.");
    } else if (action.file) {
      CheckReference({*disc.product, disc.product->lineOf(section, "Install"), action.install, action.found}, 243,
                     "The pre-install action's file", findings);
    }
  }
}

}  // namespace

void CheckFiles(const MediaModel& media, Findings& findings) {
  for (const Disc& disc : media.discs) {
    if (disc.application == nullptr || disc.application->state() != SourceIni::State::Read) continue;
    // Further discs are told of by what they lack beside the first.
    if (&disc == &media.discs.front()) CheckProductIni(disc, findings);
    CheckPackageRoot(media, disc, findings);
    if (disc.product == nullptr) continue;
    CheckEntries(disc, findings);
    CheckActions(media, disc, findings);
    for (const ComponentFact& component : disc.components) CheckComponentFiles(component, findings);
  }
}

}  // namespace qxia::check
