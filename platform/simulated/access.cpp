#include "platform/simulated/access.h"

#include <algorithm>

#include "platform/simulated/text.h"

namespace simulated {

namespace {

constexpr const char* Rights[] = {"read", "write", "full"};  ///< each holds those before it

}  // namespace

bool Holds(const std::string& first, const std::string& second) {
  return std::find(std::begin(Rights), std::end(Rights), first) >=
         std::find(std::begin(Rights), std::end(Rights), second);
}

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

/// A drive's root has no backslash behind it here.
std::string AccessLists::keyOf(const std::string& fullPath) const {
  const bool isRoot = !fullPath.empty() && WithoutTrailBytes(fullPath, japanese_).back() == '\\';
  return Lower(isRoot ? fullPath.substr(0, fullPath.size() - 1) : fullPath, japanese_);
}

const AccessList& AccessLists::of(const std::string& fullPath) const {
  static const AccessList root = OpenToAll();
  for (std::string path = keyOf(fullPath);; path.erase(path.rfind('\\'))) {
    if (const auto found = lists_.find(path); found != lists_.end()) return found->second.list;
    if (path.rfind('\\') == std::string::npos) return root;
  }
}

bool AccessLists::has(const std::string& fullPath) const {
  return lists_.count(keyOf(fullPath)) != 0;
}

void AccessLists::set(const std::string& fullPath, AccessList list) {
  lists_[keyOf(fullPath)] = {fullPath, std::move(list)};
}

void AccessLists::forget(const std::string& fullPath) {
  lists_.erase(keyOf(fullPath));
  const std::string below = keyOf(fullPath) + "\\";
  for (auto at = lists_.lower_bound(below); at != lists_.end() && at->first.rfind(below, 0) == 0;)
    at = lists_.erase(at);
}

}  // namespace simulated
