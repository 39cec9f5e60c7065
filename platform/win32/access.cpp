#include "platform/win32/access.h"

#include "platform/win32/windows_api.h"

namespace win32 {

using platform::AccessGrant;
using platform::AccessRight;
using platform::Account;
using platform::Status;
namespace status = platform::status;

namespace {

/// The identity of an account that every machine knows, built from its number: its name is another in every language.
class Identity {
 public:
  explicit Identity(Account account) {
    SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
    if (account == Account::LocalSystem) {
      AllocateAndInitializeSid(&authority, 1, SECURITY_LOCAL_SYSTEM_RID, 0, 0, 0, 0, 0, 0, 0, &sid_);
    } else {
      DWORD group = account == Account::Administrators ? DOMAIN_ALIAS_RID_ADMINS : DOMAIN_ALIAS_RID_USERS;
      AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, group, 0, 0, 0, 0, 0, 0, &sid_);
    }
  }
  ~Identity() {
    if (sid_ != nullptr) FreeSid(sid_);
  }
  Identity(const Identity&) = delete;
  Identity& operator=(const Identity&) = delete;

  PSID sid() const { return sid_; }

 private:
  PSID sid_ = nullptr;
};

constexpr std::size_t LargestEntry = sizeof(ACCESS_ALLOWED_ACE) + 64;  // an identity of two numbers needs far less

constexpr DWORD ReadAndExecute = FILE_GENERIC_READ | FILE_GENERIC_EXECUTE;  // NOLINT(misc-redundant-expression)

DWORD rights(AccessRight right) {
  return right == AccessRight::Full ? FILE_ALL_ACCESS : ReadAndExecute;
}

// The call that takes the flags with the entry came with Windows 2000.
Status addGrant(ACL* list, const AccessGrant& grant, DWORD index, BYTE inheritance) {
  Identity identity(grant.account);
  if (identity.sid() == nullptr) return GetLastError();
  if (!AddAccessAllowedAce(list, ACL_REVISION, rights(grant.right), identity.sid())) return GetLastError();
  void* entry = nullptr;
  if (!GetAce(list, index, &entry)) return GetLastError();
  static_cast<ACE_HEADER*>(entry)->AceFlags = inheritance;
  return status::Ok;
}

Status fill(ACL* list, std::size_t bytes, const std::vector<AccessGrant>& grants, BYTE inheritance) {
  if (!InitializeAcl(list, static_cast<DWORD>(bytes), ACL_REVISION)) return GetLastError();
  for (std::size_t i = 0; i < grants.size(); ++i) {
    Status outcome = addGrant(list, grants[i], static_cast<DWORD>(i), inheritance);
    if (outcome != status::Ok) return outcome;
  }
  return status::Ok;
}

/// "C:\" or "\\server\share\" of a full path.
std::string rootOf(const std::string& fullPath) {
  if (fullPath.compare(0, 2, "\\\\") != 0) return fullPath.substr(0, 2) + "\\";
  std::size_t share = fullPath.find('\\', 2);
  std::size_t end = share == std::string::npos ? share : fullPath.find('\\', share + 1);
  return fullPath.substr(0, end) + "\\";
}

Status checkVolume(const std::string& path) {
  char full[MAX_PATH] = "";
  char* name = nullptr;
  DWORD length = GetFullPathNameA(path.c_str(), sizeof full, full, &name);
  if (length == 0) return GetLastError();
  if (length >= sizeof full) return status::PathTooLong;
  DWORD features = 0;
  if (!GetVolumeInformationA(rootOf(full).c_str(), nullptr, 0, nullptr, nullptr, &features, nullptr, 0)) {
    return GetLastError();
  }
  return (features & FS_PERSISTENT_ACLS) != 0 ? status::Ok : status::CallNotImplemented;
}

Status apply(const std::string& path, ACL* list) {
  SECURITY_DESCRIPTOR descriptor;
  if (!InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION)) return GetLastError();
  if (!SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE)) return GetLastError();
  descriptor.Control |= SE_DACL_PROTECTED;  // what the folder above grants stays out, where systems pass grants down
  return SetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, &descriptor) ? status::Ok : GetLastError();
}

}  // namespace

Status replaceAccess(const std::string& path, const std::vector<AccessGrant>& grants) {
  DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return GetLastError();
  Status outcome = checkVolume(path);
  if (outcome != status::Ok) return outcome;

  bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  std::size_t bytes = sizeof(ACL) + grants.size() * LargestEntry;
  std::vector<DWORD> memory(bytes / sizeof(DWORD) + 1);  // access lists are aligned to double words
  ACL* list = reinterpret_cast<ACL*>(memory.data());
  outcome = fill(list, bytes, grants, folder ? CONTAINER_INHERIT_ACE | OBJECT_INHERIT_ACE : 0);
  return outcome == status::Ok ? apply(path, list) : outcome;
}

}  // namespace win32
