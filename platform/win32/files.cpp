#include "platform/win32/files.h"

#include <algorithm>
#include <cstring>

#include "platform/win32/access.h"
#include "platform/win32/last_status.h"
#include "platform/win32/owner.h"
#include "platform/win32/quiet_errors.h"
#include "platform/win32/system_library.h"

namespace win32 {

using platform::Attributes;
using platform::FileHandle;
using platform::FolderEntry;
using platform::Status;

namespace {

constexpr DWORD ChunkBytes = 64 * 1024;

HANDLE SystemHandle(FileHandle file) {
  return reinterpret_cast<HANDLE>(file.value);
}

Attributes PortAttributes(DWORD bits) {
  return {.readOnly = (bits & FILE_ATTRIBUTE_READONLY) != 0,
          .hidden = (bits & FILE_ATTRIBUTE_HIDDEN) != 0,
          .system = (bits & FILE_ATTRIBUTE_SYSTEM) != 0,
          .archive = (bits & FILE_ATTRIBUTE_ARCHIVE) != 0,
          .folder = (bits & FILE_ATTRIBUTE_DIRECTORY) != 0,
          .link = (bits & FILE_ATTRIBUTE_REPARSE_POINT) != 0};
}

DWORD SettableBits(const Attributes& wanted) {
  const DWORD bits = (wanted.readOnly ? FILE_ATTRIBUTE_READONLY : 0) | (wanted.hidden ? FILE_ATTRIBUTE_HIDDEN : 0) |
                     (wanted.system ? FILE_ATTRIBUTE_SYSTEM : 0) | (wanted.archive ? FILE_ATTRIBUTE_ARCHIVE : 0);
  return bits == 0 ? FILE_ATTRIBUTE_NORMAL : bits;
}

Status OpenAs(const std::string& path, DWORD access, DWORD share, DWORD creation, OwnedHandle& file) {
  file.reset(
      NullIfInvalid(CreateFileA(path.c_str(), access, share, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr)));
  return file ? Status::Ok : LastStatus();
}

// Some file systems and servers let an administrator override an attribute; the port promises a refusal.
bool HasAny(const std::string& path, DWORD guarding) {
  DWORD bits = GetFileAttributesA(path.c_str());
  return bits != INVALID_FILE_ATTRIBUTES && (bits & guarding) != 0;
}

bool IsReadOnly(const std::string& path) {
  return HasAny(path, FILE_ATTRIBUTE_READONLY);
}

Status OpenForOutput(const std::string& path, FileHandle& file) {
  file = {};
  if (IsReadOnly(path)) return Status::AccessDenied;
  OwnedHandle opened;
  Status outcome = OpenAs(path, GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS, opened);
  file.value = reinterpret_cast<std::uintptr_t>(opened.release());
  return outcome;
}

Status ReadAll(HANDLE file, std::string& bytes) {
  DWORD got = 0;
  do {
    std::size_t before = bytes.size();
    bytes.resize(before + ChunkBytes);
    if (!ReadFile(file, bytes.data() + before, ChunkBytes, &got, nullptr)) return LastStatus();
    bytes.resize(before + got);
  } while (got != 0);
  return Status::Ok;
}

/// The Windows 95 family has the function that replaces a file, but it does nothing there.
Status MoveOver(const char* from, const char* to) {
  SystemLibrary kernel("kernel32.dll");
  auto* moveFileEx = kernel.find<decltype(MoveFileExA)>("MoveFileExA");
  if (moveFileEx != nullptr && moveFileEx(from, to, MOVEFILE_REPLACE_EXISTING)) return Status::Ok;
  if (moveFileEx != nullptr && GetLastError() != ERROR_CALL_NOT_IMPLEMENTED) return LastStatus();
  if (GetFileAttributesA(from) == INVALID_FILE_ATTRIBUTES) return LastStatus();
  if (GetFileAttributesA(to) != INVALID_FILE_ATTRIBUTES && !DeleteFileA(to)) return LastStatus();
  return StatusOf(MoveFileA(from, to));
}

/// The second byte of a character may look like a backslash.
bool EndsWithSeparator(const std::string& path) {
  bool separator = false;
  for (std::size_t at = 0; at < path.size(); ++at) {
    separator = path[at] == '\\';
    if (IsDBCSLeadByteEx(CP_ACP, static_cast<BYTE>(path[at]))) ++at;
  }
  return separator;
}

std::string SearchPattern(const std::string& folder) {
  bool joined = folder.empty() || EndsWithSeparator(folder);
  return folder + (joined ? "*" : "\\*");
}

bool IsDots(const char* name) {
  return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

FolderEntry EntryOf(const WIN32_FIND_DATAA& found) {
  FolderEntry entry{found.cFileName, PortAttributes(found.dwFileAttributes), 0};
  if (!entry.isFolder()) entry.size = std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
  return entry;
}

bool ComesBefore(const FolderEntry& a, const FolderEntry& b) {
  return _stricmp(a.name.c_str(), b.name.c_str()) < 0;
}

/// Why a search in the folder found nothing at all: it does, too, in the root of an empty drive.
Status WhyNothingFound(const std::string& folder) {
  Status failure = LastStatus();
  DWORD bits = GetFileAttributesA(folder.c_str());
  bool there = bits != INVALID_FILE_ATTRIBUTES && (bits & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return there && failure == Status::FileNotFound ? Status::Ok : failure;
}

}  // namespace

std::string FilesAdapter::fullPath(const std::string& path) {
  QuietErrors quiet;
  char* name = nullptr;
  DWORD needed = GetFullPathNameA(path.c_str(), 0, nullptr, &name);
  if (needed == 0) return path;
  std::string full(needed, '\0');
  DWORD length = GetFullPathNameA(path.c_str(), needed, full.data(), &name);
  if (length == 0 || length >= needed) return path;
  full.resize(length);
  return full;
}

Status FilesAdapter::attributes(const std::string& path, Attributes& found) {
  QuietErrors quiet;
  DWORD bits = GetFileAttributesA(path.c_str());
  if (bits == INVALID_FILE_ATTRIBUTES) return LastStatus();
  found = PortAttributes(bits);
  return Status::Ok;
}

Status FilesAdapter::setAttributes(const std::string& path, const Attributes& wanted) {
  QuietErrors quiet;
  return StatusOf(SetFileAttributesA(path.c_str(), SettableBits(wanted)));
}

Status FilesAdapter::list(const std::string& folder, std::vector<FolderEntry>& entries) {
  QuietErrors quiet;
  entries.clear();
  WIN32_FIND_DATAA found;
  OwnedSearch search(NullIfInvalid(FindFirstFileA(SearchPattern(folder).c_str(), &found)));
  if (!search) return WhyNothingFound(folder);
  do {
    if (!IsDots(found.cFileName)) entries.push_back(EntryOf(found));
  } while (FindNextFileA(search.get(), &found));
  Status last = LastStatus();
  std::sort(entries.begin(), entries.end(), ComesBefore);
  return last == static_cast<Status>(ERROR_NO_MORE_FILES) ? Status::Ok : last;
}

Status FilesAdapter::read(const std::string& path, std::string& bytes) {
  QuietErrors quiet;
  bytes.clear();
  OwnedHandle file;
  Status outcome = OpenAs(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING, file);
  if (outcome == Status::Ok) outcome = ReadAll(file.get(), bytes);
  if (outcome != Status::Ok) bytes.clear();
  return outcome;
}

Status FilesAdapter::numberOfNames(const std::string& path, std::uint32_t& names) {
  QuietErrors quiet;
  names = 0;
  OwnedHandle file;
  const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE;
  const Status outcome = OpenAs(path, GENERIC_READ, share, OPEN_EXISTING, file);
  if (outcome != Status::Ok) return outcome;
  BY_HANDLE_FILE_INFORMATION facts;
  if (!GetFileInformationByHandle(file.get(), &facts)) return LastStatus();
  names = facts.nNumberOfLinks;
  return Status::Ok;
}

Status FilesAdapter::ordinaryUsersMayWrite(const std::string& path, bool& mayWrite) {
  QuietErrors quiet;
  return LooseAccess(path, mayWrite);
}

Status FilesAdapter::openForAppending(const std::string& path, FileHandle& file) {
  QuietErrors quiet;
  Status outcome = OpenForOutput(path, file);
  if (outcome == Status::Ok) SetFilePointer(SystemHandle(file), 0, nullptr, FILE_END);
  return outcome;
}

// Emptied after opening: creating anew would be refused for a hidden file.
Status FilesAdapter::openForWriting(const std::string& path, FileHandle& file) {
  QuietErrors quiet;
  Status outcome = OpenForOutput(path, file);
  if (outcome == Status::Ok) SetEndOfFile(SystemHandle(file));
  return outcome;
}

Status FilesAdapter::write(FileHandle file, const std::string& bytes) {
  QuietErrors quiet;
  DWORD written = 0;
  if (!WriteFile(SystemHandle(file), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) {
    return LastStatus();
  }
  return written == bytes.size() ? Status::Ok : Status::DiskFull;
}

Status FilesAdapter::close(FileHandle file) {
  return StatusOf(CloseHandle(SystemHandle(file)));
}

Status FilesAdapter::copyFile(const std::string& from, const std::string& to) {
  QuietErrors quiet;
  if (HasAny(to, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM)) return Status::AccessDenied;
  return StatusOf(CopyFileA(from.c_str(), to.c_str(), FALSE));
}

Status FilesAdapter::moveFile(const std::string& from, const std::string& to) {
  QuietErrors quiet;
  if (IsReadOnly(to)) return Status::AccessDenied;
  return MoveOver(from.c_str(), to.c_str());
}

Status FilesAdapter::deleteFile(const std::string& path) {
  QuietErrors quiet;
  return IsReadOnly(path) ? Status::AccessDenied : StatusOf(DeleteFileA(path.c_str()));
}

Status FilesAdapter::createFolder(const std::string& path) {
  QuietErrors quiet;
  return StatusOf(CreateDirectoryA(path.c_str(), nullptr));
}

Status FilesAdapter::deleteFolder(const std::string& path) {
  QuietErrors quiet;
  if (IsReadOnly(path)) return Status::AccessDenied;
  return StatusOf(RemoveDirectoryA(path.c_str()));
}

Status FilesAdapter::setOwner(const std::string& path, platform::Account owner) {
  QuietErrors quiet;
  return ReplaceOwner(path, owner);
}

Status FilesAdapter::setAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) {
  QuietErrors quiet;
  return ReplaceAccess(path, grants);
}

Status FilesAdapter::addAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) {
  QuietErrors quiet;
  return ExtendAccess(path, grants);
}

}  // namespace win32
