// Owners and access lists of the simulated files, as far as anybody looks at them.
#pragma once

#include <map>
#include <string>

namespace simulated {

/// Accounts are named "Administrators", "LocalSystem" and "Users"; any other name is somebody of the site.
struct AccessList {
  std::string owner = "Administrators";
  std::map<std::string, std::string> grants = {};  ///< account and right: read, write or full
};

/// What a new drive's root has, as Windows sets it up: everybody may make files and folders.
AccessList OpenToAll();
/// What the system's own folders have.
AccessList OpenToAdministrators();
/// True where the first right holds the second.
bool Holds(const std::string& first, const std::string& second);
/// Raises std::runtime_error for a right that there is not.
void RequireRight(const std::string& right);
/// "Administrators=full Users=read"
std::string ShownGrants(const std::map<std::string, std::string>& grants);

/// The lists of one machine. What has none of its own has that of the folder above.
class AccessLists {
 public:
  struct Item {
    std::string path;
    AccessList list;
  };

  void setJapanese(bool japanese) { japanese_ = japanese; }
  const AccessList& of(const std::string& fullPath) const;
  bool has(const std::string& fullPath) const;
  void set(const std::string& fullPath, AccessList list);
  /// Of the path and everything below it.
  void forget(const std::string& fullPath);
  const std::map<std::string, Item>& all() const { return lists_; }

 private:
  std::string keyOf(const std::string& fullPath) const;

  std::map<std::string, Item> lists_;  ///< by lower-case full path
  bool japanese_ = false;
};

}  // namespace simulated
