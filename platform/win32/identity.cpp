#include "platform/win32/identity.h"

#include <cstring>
#include <vector>

#include "platform/win32/owner.h"

namespace win32 {

using platform::Account;

namespace {

constexpr BYTE CreatorAuthority[] = SECURITY_CREATOR_SID_AUTHORITY;
constexpr BYTE NtAuthority[] = SECURITY_NT_AUTHORITY;

constexpr DWORD ServiceIdentities = 80;  ///< below the NT authority; the compiler's older headers name them not

/// Accounts by number: of the authority, the first number below it, and the last one (0: any).
struct KnownAccount {
  const BYTE* authority;
  DWORD first;
  DWORD last;
};

constexpr KnownAccount Trusted[] = {
    {CreatorAuthority, SECURITY_CREATOR_OWNER_RID, SECURITY_CREATOR_OWNER_RID},
    {NtAuthority, SECURITY_LOCAL_SYSTEM_RID, SECURITY_LOCAL_SYSTEM_RID},
    {NtAuthority, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS},
    {NtAuthority, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_POWER_USERS},
    {NtAuthority, SECURITY_NT_NON_UNIQUE, DOMAIN_USER_RID_ADMIN},
    {NtAuthority, SECURITY_NT_NON_UNIQUE, DOMAIN_GROUP_RID_ADMINS},
    {NtAuthority, ServiceIdentities, 0},
};

bool IsThisUser(PSID account) {
  OwnedHandle token;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.receive())) return false;
  DWORD needed = 0;
  GetTokenInformation(token.get(), TokenUser, nullptr, 0, &needed);
  std::vector<std::uint64_t> memory(needed / sizeof(std::uint64_t) + 1);
  if (!GetTokenInformation(token.get(), TokenUser, memory.data(), needed, &needed)) return false;
  return EqualSid(reinterpret_cast<TOKEN_USER*>(memory.data())->User.Sid, account) != FALSE;
}

bool Is(PSID account, const KnownAccount& known) {
  const BYTE numbers = *GetSidSubAuthorityCount(account);
  if (numbers == 0) return false;
  const DWORD last = *GetSidSubAuthority(account, numbers - 1U);
  return std::memcmp(GetSidIdentifierAuthority(account)->Value, known.authority, sizeof NtAuthority) == 0 &&
         *GetSidSubAuthority(account, 0) == known.first &&
         (known.last == last || (known.last == 0 && known.first != 0));
}

}  // namespace

// Built from numbers: the names are others in every language.
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

bool IsTrusted(PSID account) {
  if (account == nullptr || !IsValidSid(account)) return false;
  for (const KnownAccount& known : Trusted) {
    if (Is(account, known)) return true;
  }
  return IsThisUser(account);
}

}  // namespace win32
