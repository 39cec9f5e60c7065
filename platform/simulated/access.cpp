#include "platform/simulated/access.h"

#include <algorithm>

#include "platform/simulated/files.h"
#include "platform/simulated/text.h"

namespace simulated {

using platform::Status;

namespace {

constexpr const char* AccountNames[] = {"Administrators", "LocalSystem", "Users"};  ///< as platform::Account
constexpr const char* Rights[] = {"read", "write", "full"};                         ///< each holds those before it

std::string NameOf(platform::Account account) {
  return AccountNames[static_cast<int>(account)];
}

std::string RightOf(platform::AccessRight right) {
  return right == platform::AccessRight::Full ? "full" : "read";
}

/// True where the first right holds the second.
bool Holds(const std::string& first, const std::string& second) {
  return std::find(std::begin(Rights), std::end(Rights), first) >=
         std::find(std::begin(Rights), std::end(Rights), second);
}

/// A drive's root has no backslash behind it here.
std::string KeyOf(const std::string& fullPath) {
  const bool isRoot = !fullPath.empty() && fullPath.back() == '\\';
  return Lower(isRoot ? fullPath.substr(0, fullPath.size() - 1) : fullPath);
}

bool IsTrusted(const std::string& account) {
  return account == "Administrators" || account == "LocalSystem";
}

/// Whether the program acts as this account. On drives where it is no administrator, a site's groups are those that it
/// belongs to.
bool ActsAs(const Drive& drive, const std::string& account) {
  if (account == "Users") return true;
  return drive.administrator ? account == "Administrators" : !IsTrusted(account);
}

bool MayUse(const Drive& drive, const AccessList& list, const std::string& right) {
  return std::any_of(list.grants.begin(), list.grants.end(),
                     [&](const auto& grant) { return ActsAs(drive, grant.first) && Holds(grant.second, right); });
}

bool MayChangeList(const Drive& drive, const AccessList& list) {
  return ActsAs(drive, list.owner) || MayUse(drive, list, "full");
}

}  // namespace

AccessList OpenToAll() {
  return {"Administrators", {{"Administrators", "full"}, {"LocalSystem", "full"}, {"Users", "write"}}};
}

AccessList OpenToAdministrators() {
  return {"Administrators", {{"Administrators", "full"}, {"LocalSystem", "full"}, {"Users", "read"}}};
}

void RequireRight(const std::string& right) {
  if (std::find(std::begin(Rights), std::end(Rights), right) == std::end(Rights))
    Refuse("'" + right + "': write read, write or full");
}

std::string ShownGrants(const std::map<std::string, std::string>& grants) {
  std::string shown;
  for (const auto& [account, right] : grants) shown.append(shown.empty() ? "" : " ").append(account + "=" + right);
  return shown;
}

const AccessList& AccessLists::of(const std::string& fullPath) const {
  static const AccessList root = OpenToAll();
  for (std::string path = KeyOf(fullPath);; path.erase(path.rfind('\\'))) {
    if (const auto found = lists_.find(path); found != lists_.end()) return found->second.list;
    if (path.rfind('\\') == std::string::npos) return root;
  }
}

bool AccessLists::has(const std::string& fullPath) const {
  return lists_.count(KeyOf(fullPath)) != 0;
}

void AccessLists::set(const std::string& fullPath, AccessList list) {
  lists_[KeyOf(fullPath)] = {fullPath, std::move(list)};
}

void AccessLists::forget(const std::string& fullPath) {
  lists_.erase(KeyOf(fullPath));
  const std::string below = KeyOf(fullPath) + "\\";
  for (auto at = lists_.lower_bound(below); at != lists_.end() && at->first.rfind(below, 0) == 0;)
    at = lists_.erase(at);
}

bool Files::keepsLists(const Drive& drive) const {
  return accessControl_ && drive.accessLists.value_or(drive.type == platform::DriveType::Fixed);
}

bool Files::mayChange(const Place& place) const {
  return !keepsLists(*place.drive) || MayUse(*place.drive, lists_.of(place.path), "write");
}

/// What the program makes takes the list of the folder above, and is its user's own.
void Files::makeOwn(const Place& place) {
  AccessList list = lists_.of(place.path);
  const std::string owner = place.drive->administrator ? "Administrators" : "Installer";
  if (list.owner == owner) return;
  list.owner = owner;
  lists_.set(place.path, list);
}

/// What is below the folder already keeps the list that it has.
void Files::changeList(const std::string& full, AccessList list) {
  std::vector<platform::FolderEntry> entries;
  this->list(full, entries);
  for (const platform::FolderEntry& entry : entries) {
    const std::string below = full + (full.back() == '\\' ? "" : "\\") + entry.name;
    if (!lists_.has(below)) lists_.set(below, lists_.of(full));
  }
  lists_.set(full, std::move(list));
}

Status Files::numberOfNames(const std::string& path, std::uint32_t& names) {
  const Place place = locate(path);
  names = place.status == Status::Ok ? place.names : 0;
  return place.status;
}

Status Files::ordinaryUsersMayWrite(const std::string& path, bool& mayWrite) {
  mayWrite = false;
  const Place place = locate(path);
  if (place.status != Status::Ok) return place.status;
  if (!keepsLists(*place.drive)) return Status::CallNotImplemented;
  const AccessList& list = lists_.of(place.path);
  if (!MayUse(*place.drive, list, "read") && !MayChangeList(*place.drive, list)) return Status::AccessDenied;
  mayWrite = !IsTrusted(list.owner) || std::any_of(list.grants.begin(), list.grants.end(), [](const auto& grant) {
    return !IsTrusted(grant.first) && Holds(grant.second, "write");
  });
  return Status::Ok;
}

Status Files::setOwner(const std::string& path, platform::Account owner) {
  const Place place = locate(path);
  if (place.status != Status::Ok) return place.status;
  if (!keepsLists(*place.drive)) return Status::CallNotImplemented;
  if (!place.drive->administrator) return Status::AccessDenied;
  AccessList list = lists_.of(place.path);
  list.owner = NameOf(owner);
  changeList(place.path, list);
  journal_.record("owner " + place.path + ": " + list.owner);
  return Status::Ok;
}

Status Files::setAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) {
  const Place place = locate(path);
  if (place.status != Status::Ok) return place.status;
  if (!keepsLists(*place.drive)) return Status::CallNotImplemented;
  AccessList list = lists_.of(place.path);
  if (!MayChangeList(*place.drive, list)) return Status::AccessDenied;
  list.grants.clear();
  for (const platform::AccessGrant& grant : grants) list.grants[NameOf(grant.account)] = RightOf(grant.right);
  changeList(place.path, list);
  journal_.record("access " + place.path + ": " + ShownGrants(list.grants));
  return Status::Ok;
}

Status Files::addAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) {
  const Place place = locate(path);
  if (place.status != Status::Ok) return place.status;
  if (!keepsLists(*place.drive)) return Status::CallNotImplemented;
  AccessList list = lists_.of(place.path);
  std::map<std::string, std::string> added;
  for (const platform::AccessGrant& grant : grants) {
    const auto held = list.grants.find(NameOf(grant.account));
    if (held == list.grants.end() || !Holds(held->second, RightOf(grant.right)))
      added[NameOf(grant.account)] = RightOf(grant.right);
  }
  if (added.empty()) return Status::Ok;
  if (!MayChangeList(*place.drive, list)) return Status::AccessDenied;
  for (const auto& [account, right] : added) list.grants[account] = right;
  changeList(place.path, list);
  journal_.record("access added " + place.path + ": " + ShownGrants(added));
  return Status::Ok;
}

}  // namespace simulated
