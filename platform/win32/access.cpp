#include "platform/win32/access.h"

#include "platform/win32/identity.h"
#include "platform/win32/last_status.h"
#include "platform/win32/owner.h"
#include "platform/win32/privilege.h"

namespace win32 {

using platform::AccessGrant;
using platform::AccessRight;
using platform::Account;
using platform::Status;

namespace {

constexpr DWORD ReadAndExecuteBits = FILE_GENERIC_READ | FILE_GENERIC_EXECUTE;  // NOLINT(misc-redundant-expression)

/// Each of these lets an account change what a folder holds or who may change it. Of a new sub-folder beside a program
/// the system may take libraries.
constexpr DWORD WritingBits = FILE_WRITE_DATA | FILE_APPEND_DATA | FILE_DELETE_CHILD | DELETE | WRITE_DAC |
                              WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;

DWORD RightBits(AccessRight right) {
  return right == AccessRight::Full ? FILE_ALL_ACCESS : ReadAndExecuteBits;
}

/// "C:\" or "\\server\share\" of a full path.
std::string VolumeRoot(const std::string& fullPath) {
  if (fullPath.compare(0, 2, "\\\\") != 0) return fullPath.substr(0, 2) + "\\";
  std::size_t share = fullPath.find('\\', 2);
  std::size_t end = share == std::string::npos ? share : fullPath.find('\\', share + 1);
  return fullPath.substr(0, end) + "\\";
}

/// Ok where the file or folder is there, on a volume that keeps access lists.
Status CheckVolume(const std::string& path) {
  if (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) return LastStatus();
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

BYTE InheritanceOn(const std::string& path) {
  return (GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_DIRECTORY) != 0 ? CONTAINER_INHERIT_ACE | OBJECT_INHERIT_ACE
                                                                            : 0;
}

/// Owner and access list of a file or folder, as the system hands them out.
class Security {
 public:
  Status read(const std::string& path) {
    DWORD needed = 0;
    constexpr SECURITY_INFORMATION parts = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
    GetFileSecurityA(path.c_str(), parts, nullptr, 0, &needed);
    if (needed == 0) return LastStatus();
    memory_.assign(needed / sizeof(DWORD) + 1, 0);
    return StatusOf(GetFileSecurityA(path.c_str(), parts, descriptor(), needed, &needed));
  }

  /// Null where everybody may do everything.
  ACL* list() {
    BOOL present = FALSE, defaulted = FALSE;
    ACL* found = nullptr;
    return GetSecurityDescriptorDacl(descriptor(), &present, &found, &defaulted) && present ? found : nullptr;
  }
  PSID owner() {
    BOOL defaulted = FALSE;
    PSID found = nullptr;
    return GetSecurityDescriptorOwner(descriptor(), &found, &defaulted) ? found : nullptr;
  }
  /// How the list stands to that of the folder above.
  SECURITY_DESCRIPTOR_CONTROL inheritance() {
    return static_cast<SECURITY_DESCRIPTOR_RELATIVE*>(descriptor())->Control &
           (SE_DACL_PROTECTED | SE_DACL_AUTO_INHERITED);
  }

 private:
  PSECURITY_DESCRIPTOR descriptor() { return memory_.data(); }

  std::vector<DWORD> memory_;
};

std::vector<ACCESS_ALLOWED_ACE*> GrantsOf(ACL* list) {
  std::vector<ACCESS_ALLOWED_ACE*> grants;
  void* entry = nullptr;
  for (DWORD i = 0; i < list->AceCount && GetAce(list, i, &entry); ++i) {
    if (static_cast<ACE_HEADER*>(entry)->AceType == ACCESS_ALLOWED_ACE_TYPE)
      grants.push_back(static_cast<ACCESS_ALLOWED_ACE*>(entry));
  }
  return grants;
}

PSID AccountOf(ACCESS_ALLOWED_ACE* grant) {
  return &grant->SidStart;
}

bool Holds(ACL* list, const AccessGrant& wanted, BYTE inheritance) {
  const OwnedIdentity identity(NewIdentity(wanted.account));
  if (!identity) return false;
  for (ACCESS_ALLOWED_ACE* grant : GrantsOf(list)) {
    const BYTE flags = grant->Header.AceFlags;
    const bool enough = (grant->Mask & RightBits(wanted.right)) == RightBits(wanted.right) &&
                        (flags & INHERIT_ONLY_ACE) == 0 && (flags & inheritance) == inheritance;
    if (enough && EqualSid(AccountOf(grant), identity.get())) return true;
  }
  return false;
}

/// A list with room for one more entry for each grant.
class NewList {
 public:
  explicit NewList(std::size_t bytes) : memory_(bytes / sizeof(DWORD) + 1) {}  // lists are aligned to double words

  Status begin() {
    return StatusOf(InitializeAcl(get(), static_cast<DWORD>(memory_.size() * sizeof(DWORD)), ACL_REVISION));
  }
  ACL* get() { return reinterpret_cast<ACL*>(memory_.data()); }

  /// All entries of another list that are inherited, or all that are not.
  Status append(ACL* from, bool inherited) {
    void* entry = nullptr;
    for (DWORD i = 0; i < from->AceCount && GetAce(from, i, &entry); ++i) {
      const auto* header = static_cast<ACE_HEADER*>(entry);
      if (((header->AceFlags & INHERITED_ACE) != 0) != inherited) continue;
      if (!AddAce(get(), from->AclRevision, MAXDWORD, entry, header->AceSize)) return LastStatus();
    }
    return Status::Ok;
  }

  // The call that takes the flags with the entry came with Windows 2000.
  Status append(const AccessGrant& grant, BYTE inheritance) {
    OwnedIdentity identity(NewIdentity(grant.account));
    if (!identity) return LastStatus();
    const BYTE revision = get()->AclRevision;
    if (!AddAccessAllowedAce(get(), revision, RightBits(grant.right), identity.get())) return LastStatus();
    void* entry = nullptr;
    if (!GetAce(get(), get()->AceCount - 1, &entry)) return LastStatus();
    static_cast<ACE_HEADER*>(entry)->AceFlags = inheritance;
    return Status::Ok;
  }

  Status append(const std::vector<AccessGrant>& grants, BYTE inheritance) {
    Status outcome = Status::Ok;
    for (std::size_t i = 0; i < grants.size() && outcome == Status::Ok; ++i) outcome = append(grants[i], inheritance);
    return outcome;
  }

 private:
  std::vector<DWORD> memory_;
};

std::size_t BytesOf(const std::vector<AccessGrant>& grants) {
  constexpr std::size_t largestEntry = sizeof(ACCESS_ALLOWED_ACE) + 64;  // an identity of two numbers needs far less
  return sizeof(ACL) + grants.size() * largestEntry;
}

Status GuardBy(const std::string& path, ACL* list, SECURITY_DESCRIPTOR_CONTROL inheritance) {
  SECURITY_DESCRIPTOR descriptor;
  if (!InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION)) return LastStatus();
  if (!SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE)) return LastStatus();
  descriptor.Control |= inheritance;
  return StatusOf(SetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, &descriptor));
}

}  // namespace

Status ReplaceAccess(const std::string& path, const std::vector<AccessGrant>& grants) {
  Status outcome = CheckVolume(path);
  if (outcome != Status::Ok) return outcome;
  NewList list(BytesOf(grants));
  outcome = list.begin();
  if (outcome == Status::Ok) outcome = list.append(grants, InheritanceOn(path));
  // What the folder above grants stays out, where systems pass grants down.
  return outcome == Status::Ok ? GuardBy(path, list.get(), SE_DACL_PROTECTED) : outcome;
}

Status ExtendAccess(const std::string& path, const std::vector<AccessGrant>& grants) {
  Status outcome = CheckVolume(path);
  if (outcome != Status::Ok) return outcome;
  Security security;
  outcome = security.read(path);
  ACL* held = outcome == Status::Ok ? security.list() : nullptr;
  if (held == nullptr) return outcome;
  const BYTE inheritance = InheritanceOn(path);
  std::vector<AccessGrant> missing;
  for (const AccessGrant& grant : grants) {
    if (!Holds(held, grant, inheritance)) missing.push_back(grant);
  }
  if (missing.empty()) return Status::Ok;

  NewList list(held->AclSize + BytesOf(missing));
  outcome = list.begin();
  if (outcome == Status::Ok) outcome = list.append(held, false);
  if (outcome == Status::Ok) outcome = list.append(missing, inheritance);
  if (outcome == Status::Ok) outcome = list.append(held, true);
  if (outcome != Status::Ok) return outcome;
  const SECURITY_DESCRIPTOR_CONTROL before = security.inheritance();
  const bool inherits = (before & SE_DACL_AUTO_INHERITED) != 0;
  return GuardBy(path, list.get(),
                 static_cast<SECURITY_DESCRIPTOR_CONTROL>(before | (inherits ? SE_DACL_AUTO_INHERIT_REQ : 0)));
}

Status ReplaceOwner(const std::string& path, Account owner) {
  const Status outcome = CheckVolume(path);
  if (outcome != Status::Ok) return outcome;
  const OwnedIdentity identity(NewIdentity(owner));
  if (!identity) return LastStatus();
  // Where the account does not hold them, the access list decides.
  EnablePrivilege("SeTakeOwnershipPrivilege");
  EnablePrivilege("SeRestorePrivilege");
  SECURITY_DESCRIPTOR descriptor;
  if (!InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION)) return LastStatus();
  if (!SetSecurityDescriptorOwner(&descriptor, identity.get(), FALSE)) return LastStatus();
  return StatusOf(SetFileSecurityA(path.c_str(), OWNER_SECURITY_INFORMATION, &descriptor));
}

Status LooseAccess(const std::string& path, bool& mayWrite) {
  mayWrite = false;
  Status outcome = CheckVolume(path);
  if (outcome != Status::Ok) return outcome;
  Security security;
  outcome = security.read(path);
  if (outcome != Status::Ok) return outcome;
  mayWrite = security.list() == nullptr || !IsTrusted(security.owner());
  if (mayWrite) return Status::Ok;
  for (ACCESS_ALLOWED_ACE* grant : GrantsOf(security.list())) {
    mayWrite = mayWrite || ((grant->Mask & WritingBits) != 0 && !IsTrusted(AccountOf(grant)));
  }
  return Status::Ok;
}

}  // namespace win32
