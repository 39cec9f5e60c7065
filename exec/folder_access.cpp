#include "exec/folder_access.h"

#include <algorithm>

#include "base/error_texts.h"
#include "base/paths.h"
#include "base/text.h"

namespace assistant {
namespace {

using platform::AccessGrant;
using platform::Status;

/// The product's folders belong to the administrators and the system; everybody may run what is in them.
const std::vector<AccessGrant>& ProductGrants() {
  using platform::AccessRight;
  using platform::Account;
  static const std::vector<AccessGrant> grants = {{Account::Administrators, AccessRight::Full},
                                                  {Account::LocalSystem, AccessRight::Full},
                                                  {Account::Users, AccessRight::ReadAndExecute}};
  return grants;
}

/// False where there is nothing to set; raises a refusal.
bool RequireSet(const Procedure& here, Status set, const std::string& path) {
  if (set == Status::Ok) return true;
  if (set == Status::CallNotImplemented) return false;
  throw here.failure(set, "The permissions of " + path + " could not be set: " + modErrorBase::SystemErrorText(set));
}

bool IsOpen(platform::FileReader& files, const Procedure& here, const std::string& folder) {
  bool open = false;
  const Status looked = files.ordinaryUsersMayWrite(AsAsked(folder), open);
  if (looked == Status::Ok || looked == Status::CallNotImplemented) return open;
  // A list that cannot be read may say anything.
  here.detail("The permissions of " + folder + " could not be read: " + modErrorBase::SystemErrorText(looked));
  return true;
}

/// Nobody can put a link into the place of a folder any more before what is in it is deleted.
void DeleteTightly(const Services& services, const Procedure& here, const std::string& folder) {
  clsFso& fso = services.fso;
  if (!fso.isLink(folder)) {
    Tighten(services, here, folder);
    for (const std::string& name : fso.listFolders(folder)) DeleteTightly(services, here, Joined(folder, name));
  }
  fso.deleteFolderForced(folder);
}

bool Has(const std::vector<std::string>& names, const std::string& name) {
  return std::any_of(names.begin(), names.end(), [&](const std::string& one) { return EqualIgnoringCase(one, name); });
}

}  // namespace

std::vector<std::string> MakeFolder(clsFso& fso, const std::string& folder) {
  std::vector<std::string> missing;
  for (std::string path = folder; !path.empty() && !fso.folderExists(path); path = FolderPart(path)) {
    missing.insert(missing.begin(), path);
  }
  fso.createFolder(folder);
  return missing;
}

void GuardMade(platform::Files& files, const Procedure& here, const std::string& path) {
  RequireSet(here, files.setAccess(AsAsked(path), ProductGrants()), path);
}

void GuardKept(platform::Files& files, const Procedure& here, const std::string& path) {
  RequireSet(here, files.addAccess(AsAsked(path), ProductGrants()), path);
}

bool KeepsAccess(platform::FileReader& files, const std::string& path) {
  bool open = false;
  return files.ordinaryUsersMayWrite(AsAsked(path), open) != Status::CallNotImplemented;
}

bool Tighten(const Services& services, const Procedure& here, const std::string& folder) {
  platform::Files& files = services.machine.files();
  if (!IsOpen(files, here, folder)) return RequireSet(here, files.addAccess(folder, ProductGrants()), folder);
  here.action("Ordinary users may write to " + folder + ", which is from now on the administrators' alone");
  RequireSet(here, files.setOwner(folder, platform::Account::Administrators), folder);
  GuardMade(files, here, folder);
  if (IsOpen(files, here, folder)) throw here.failure("Ordinary users may still write to " + folder);
  return true;
}

void DeleteStrangers(const Services& services, const Procedure& here, const std::string& folder,
                     const std::string& model, Strangers strangers) {
  clsFso& fso = services.fso;
  const std::vector<std::string> files = fso.listFiles(model);
  const std::vector<std::string> folders = fso.listFolders(model);
  for (const std::string& name : fso.listFiles(folder)) {
    const std::string path = Joined(folder, name);
    if (Has(files, name) && !fso.isLink(path)) continue;
    here.action("Deleting " + path + ", which the component does not have");
    fso.deleteFileForced(path);
  }
  for (const std::string& name : fso.listFolders(folder)) {
    const std::string path = Joined(folder, name);
    const bool isLink = fso.isLink(path);
    if (Has(folders, name) && !isLink) continue;
    const bool stays = !isLink && strangers == Strangers::GuardedStay && !IsOpen(services.machine.files(), here, path);
    if (stays) continue;
    here.action("Deleting " + path + ", which the component does not have");
    DeleteTightly(services, here, path);
  }
}

void WarnOfOpenFolder(platform::FileReader& files, const Procedure& here, const std::string& component,
                      const std::string& folder) {
  bool open = false;
  const std::string asked = AsAsked(folder);
  const Status looked = files.ordinaryUsersMayWrite(asked, open);
  if (looked == Status::CallNotImplemented || (looked == Status::Ok && !open)) return;
  here.warn("Component " + component + " runs from " + asked +
            (open ? ", a folder that ordinary users can write to: what they put there runs with administrator rights. "
                    "Let only administrators write to it."
                  : ", and whether ordinary users can write to that folder could not be seen: " +
                        modErrorBase::SystemErrorText(looked)));
}

}  // namespace assistant
