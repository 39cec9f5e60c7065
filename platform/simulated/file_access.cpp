// What owners and access lists mean to the program.
#include <algorithm>

#include "platform/simulated/files.h"

namespace simulated {

using platform::Status;

namespace {

constexpr const char* AccountNames[] = {"Administrators", "LocalSystem", "Users"};  ///< as platform::Account

std::string NameOf(platform::Account account) {
  return AccountNames[static_cast<int>(account)];
}

std::string RightOf(platform::AccessRight right) {
  return right == platform::AccessRight::Full ? "full" : "read";
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
