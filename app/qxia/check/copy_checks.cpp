// QX501 to QX508: copying a component's folder.
#include <algorithm>
#include <map>

#include "app/qxia/check/checks.h"
#include "app/qxia/check/known_keys.h"
#include "app/qxia/check/machine_paths.h"
#include "base/component.h"
#include "base/paths.h"
#include "base/record_keys.h"
#include "base/text.h"
#include "exec/copy_targets.h"
#include "exec/version_folders.h"

namespace qxia::check {
namespace {

/// A folder of the machine that a component is copied to.
struct Target {
  std::string given;
  const SourceIni* file;
  int line;
  bool appendsPath;
};

std::vector<Target> TargetsOf(const MediaModel& media, const ComponentFact& component) {
  std::vector<Target> targets;
  for (int number = 1;; ++number) {
    const IniEntry* entry = FindEntry(*component.section, assistant::NumberedTarget(number));
    if (entry == nullptr || entry->value.empty()) break;
    targets.push_back({entry->value, component.ini, entry->line, false});
  }
  if (!targets.empty()) return targets;
  if (const IniEntry* entry = FindEntry(*component.section, "CopyOpTarget");
      entry != nullptr && !assistant::IsNotGiven(entry->value))
    return {{entry->value, component.ini, entry->line, true}};
  const char* key = component.copyCode == assistant::CopyCode::IsTheInstallation ? "CopyOpRoot" : "CopyOpHold";
  const SourceIni* application = media.discs.front().application;
  const std::string root = assistant::Given(application->value("Product", key));
  if (root.empty()) return {};
  return {{root, application, application->lineOf("Product", key), true}};
}

bool HasForbiddenElement(const std::string& path) {
  const std::vector<std::string> elements = assistant::Split(path, '\\');
  return assistant::Contains(path, "/") || std::any_of(elements.begin(), elements.end(), assistant::IsDots);
}

std::string DestinationOf(const ComponentFact& component, const std::string& folder, bool appendsPath) {
  assistant::Component recorded;
  recorded.path = component.path;
  return assistant::CopyDestination(recorded, folder, appendsPath);
}

bool IsVersionFolder(const std::string& path) {
  return assistant::IsVersionFolderName(assistant::LowerCase(assistant::LastElement(path)));
}

/// The checks of the copies, which know where earlier components were copied to.
class CopyCheck {
 public:
  CopyCheck(const MediaModel& media, Findings& findings) : media_(media), findings_(findings) {}

  void check(const ComponentFact& component) {
    checkCode(component);
    checkNumbers(component);
    if (!component.isCopied()) return;
    const std::vector<Target> targets = TargetsOf(media_, component);
    if (targets.empty())
      findings_.add(505, *component.ini, component.lineOf("CopyOp"),
                    "Component " + component.name + " is copied, but nothing says where to.");
    for (const Target& target : targets) checkTarget(component, target);
    checkFolder(component);
  }

 private:
  void checkCode(const ComponentFact& component) {
    const std::string given = assistant::Given(assistant::Trim(component.value("CopyOp")));
    if (given.empty() || given == "0" || given == "1" || given == "2") return;
    const std::string meaning =
        component.isCopied() ? std::string("counts as ") + component.copyCode : "copies nothing";
    findings_.add(501, *component.ini, component.lineOf("CopyOp"), "CopyOp=" + given + " " + meaning + ".");
  }

  void checkNumbers(const ComponentFact& component) {
    for (const IniEntry& entry : component.section->entries) {
      const int number = NumberOf(entry.key, "CopyOpTarget");
      if (number < 2 || !entry.hasEquals || entry.value.empty()) continue;
      for (int before = 1; before < number; ++before) {
        const IniEntry* other = FindEntry(*component.section, assistant::NumberedTarget(before));
        if (other != nullptr && !other->value.empty()) continue;
        findings_.add(506, *component.ini, entry.line,
                      entry.key + " is never read: " + assistant::NumberedTarget(before) + " is missing or empty.");
        break;
      }
    }
  }

  void checkTarget(const ComponentFact& component, const Target& target) {
    const auto folder = MachinePath(media_, target.given);
    if (!folder || HasForbiddenElement(*folder))
      return findings_.add(
          502, *target.file, target.line,
          "The copy target " + target.given +
              (folder ? " holds /, . or .." : " is neither a full path nor on a share of these media") + ".");
    const std::string destination = DestinationOf(component, *folder, target.appendsPath);
    if (!assistant::IsBelowRoot(destination) || IsInSystemFolder(destination))
      return findings_.add(503, *target.file, target.line,
                           "Component " + component.name + " is copied to " + destination + ".");
    checkVersionFolders(component, target, destination);
  }

  /// Beside a version folder every other one is deleted.
  void checkVersionFolders(const ComponentFact& component, const Target& target, const std::string& destination) {
    const bool deletes = IsVersionFolder(destination) &&
                         (target.appendsPath || assistant::ContainsIgnoringCase(destination, component.path));
    const std::string parent = assistant::FolderPart(destination);
    const std::string key = assistant::LowerCase(parent);
    const auto earlier = versionFolders_.find(key);
    const int line = target.file == component.ini ? target.line : component.lineOf("CopyOp");
    if (deletes && earlier != versionFolders_.end()) {
      findings_.add(504, *component.ini, line,
                    "The copy to " + destination + " deletes that of component " + earlier->second + " beside it.");
    } else if (deletes && (!assistant::IsBelowRoot(parent) || isSharedFolder(parent, target))) {
      findings_.add(504, *component.ini, line,
                    "The copy to " + destination + " deletes every version folder in " + parent + ".");
    }
    if (IsVersionFolder(destination)) versionFolders_.emplace(key, component.name);
  }

  /// A folder that is no component's own: a share's, or the root that a path follows.
  bool isSharedFolder(const std::string& folder, const Target& target) const {
    const auto root = MachinePath(media_, target.given);
    if (target.appendsPath && root && assistant::EqualIgnoringCase(assistant::Normalised(*root), folder)) return true;
    for (const Disc& disc : media_.discs)
      for (const ShareFact& share : disc.shares)
        if (share.parsed.defect.empty() && assistant::EqualIgnoringCase(share.parsed.share.folder, folder)) return true;
    return false;
  }

  void checkFolder(const ComponentFact& component) {
    const std::string last = assistant::LastElement(component.path);
    if (component.copyCode == assistant::CopyCode::IsTheInstallation && IsVersionFolder(last) &&
        !assistant::Contains(last, "v"))
      findings_.add(507, *component.disc->product, component.listedOn,
                    "The version folder " + last + " has no small v: a newer one beside the target is deleted.");
    if (!component.folder) return;
    const Found& folder = component.disc->files.look(*component.folder);
    if (!folder.isThere() || !folder.isFolder) return;
    const std::vector<FolderItem>& items = component.disc->files.items(folder.host);
    if (std::none_of(items.begin(), items.end(), [](const FolderItem& item) { return !item.isFolder; }))
      findings_.add(508, *component.ini, component.lineOf("CopyOp"),
                    "The folder " + folder.shown + " holds no file of its own, so nothing is copied.");
  }

  const MediaModel& media_;
  Findings& findings_;
  std::map<std::string, std::string> versionFolders_;
};

}  // namespace

void CheckCopies(const MediaModel& media, Findings& findings) {
  CopyCheck check(media, findings);
  for (const ComponentFact* component : media.components())
    if (component->section != nullptr) check.check(*component);
}

}  // namespace qxia::check
