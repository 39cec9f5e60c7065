#include "platform/win32/access.h"

#include "platform/win32/last_status.h"
#include "platform/win32/owner.h"

namespace win32 {

using platform::AccessGrant;
using platform::AccessRight;
using platform::Account;
using platform::Status;

namespace {

/// The identity of an account that every machine knows, built from its number: its name is another in every language.
PSID NewIdentity(Account account) {
  SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
  PSID identity = nullptr;
  if (account == Account::LocalSystem) {
    AllocateAndInitializeSid(&authority, 1, SECURITY_LOCAL_SYSTEM_RID, 0, 0, 0, 0, 0, 0, 0, &identity);
  } else {
    DWORD group = account == Account::Administrators ? DOMAIN_ALIAS_RID_ADMINS : DOMAIN_ALIAS_RID_USERS;
    AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, group, 0, 0, 0, 0, 0, 0, &identity);
  }
  return identity;
}

constexpr std::size_t LargestEntry = sizeof(ACCESS_ALLOWED_ACE) + 64;  // an identity of two numbers needs far less

constexpr DWORD ReadAndExecuteBits = FILE_GENERIC_READ | FILE_GENERIC_EXECUTE;  // NOLINT(misc-redundant-expression)

DWORD RightBits(AccessRight right) {
  return right == AccessRight::Full ? FILE_ALL_ACCESS : ReadAndExecuteBits;
}

// The call that takes the flags with the entry came with Windows 2000.
Status AddGrant(ACL* list, const AccessGrant& grant, DWORD index, BYTE inheritance) {
  OwnedIdentity identity(NewIdentity(grant.account));
  if (!identity) return LastStatus();
  if (!AddAccessAllowedAce(list, ACL_REVISION, RightBits(grant.right), identity.get())) return LastStatus();
  void* entry = nullptr;
  if (!GetAce(list, index, &entry)) return LastStatus();
  static_cast<ACE_HEADER*>(entry)->AceFlags = inheritance;
  return Status::Ok;
}

Status FillList(ACL* list, std::size_t bytes, const std::vector<AccessGrant>& grants, BYTE inheritance) {
  if (!InitializeAcl(list, static_cast<DWORD>(bytes), ACL_REVISION)) return LastStatus();
  for (std::size_t i = 0; i < grants.size(); ++i) {
    Status outcome = AddGrant(list, grants[i], static_cast<DWORD>(i), inheritance);
    if (outcome != Status::Ok) return outcome;
  }
  return Status::Ok;
}

/// "C:\" or "\\server\share\" of a full path.
std::string VolumeRoot(const std::string& fullPath) {
  if (fullPath.compare(0, 2, "\\\\") != 0) return fullPath.substr(0, 2) + "\\";
  std::size_t share = fullPath.find('\\', 2);
  std::size_t end = share == std::string::npos ? share : fullPath.find('\\', share + 1);
  return fullPath.substr(0, end) + "\\";
}

Status CheckVolume(const std::string& path) {
  char full[MAX_PATH] = "";
  char* name = nullptr;
  DWORD length = GetFullPathNameA(path.c_str(), sizeof full, full, &name);
  if (length == 0) return LastStatus();
  if (length >= sizeof full) return Status::PathTooLong;
  DWORD features = 0;
  if (!GetVolumeInformationA(VolumeRoot(full).c_str(), nullptr, 0, nullptr, nullptr, &features, nullptr, 0)) {
    return LastStatus();
  }
  return (features & FS_PERSISTENT_ACLS) != 0 ? Status::Ok : Status::CallNotImplemented;
}

Status GuardBy(const std::string& path, ACL* list) {
  SECURITY_DESCRIPTOR descriptor;
  if (!InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION)) return LastStatus();
  if (!SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE)) return LastStatus();
  descriptor.Control |= SE_DACL_PROTECTED;  // what the folder above grants stays out, where systems pass grants down
  return StatusOf(SetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, &descriptor));
}

}  // namespace

Status ReplaceAccess(const std::string& path, const std::vector<AccessGrant>& grants) {
  DWORD bits = GetFileAttributesA(path.c_str());
  if (bits == INVALID_FILE_ATTRIBUTES) return LastStatus();
  Status outcome = CheckVolume(path);
  if (outcome != Status::Ok) return outcome;

  bool folder = (bits & FILE_ATTRIBUTE_DIRECTORY) != 0;
  std::size_t bytes = sizeof(ACL) + grants.size() * LargestEntry;
  std::vector<DWORD> memory(bytes / sizeof(DWORD) + 1);  // access lists are aligned to double words
  ACL* list = reinterpret_cast<ACL*>(memory.data());
  outcome = FillList(list, bytes, grants, folder ? CONTAINER_INHERIT_ACE | OBJECT_INHERIT_ACE : 0);
  return outcome == Status::Ok ? GuardBy(path, list) : outcome;
}

}  // namespace win32
