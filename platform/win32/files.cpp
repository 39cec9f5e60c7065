#include "platform/win32/files.h"

#include <algorithm>
#include <cstring>

#include "platform/win32/access.h"
#include "platform/win32/quiet_errors.h"

namespace win32 {

using platform::FileHandle;
using platform::FolderEntry;
using platform::Status;
namespace attribute = platform::attribute;
namespace status = platform::status;

namespace {

constexpr std::uint32_t Settable = attribute::ReadOnly | attribute::Hidden | attribute::System | attribute::Archive;
constexpr std::uint32_t KnownAttributes = Settable | attribute::Folder | attribute::Link;
constexpr DWORD ChunkBytes = 64 * 1024;

HANDLE systemHandle(FileHandle file) {
  return reinterpret_cast<HANDLE>(file.value);
}

Status result(BOOL succeeded) {
  return succeeded ? status::Ok : GetLastError();
}

Status open(const std::string& path, DWORD access, DWORD share, DWORD creation, HANDLE& file) {
  file = CreateFileA(path.c_str(), access, share, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
  return file == INVALID_HANDLE_VALUE ? GetLastError() : status::Ok;
}

// Some file systems and servers let an administrator override the attribute; the port promises a refusal.
bool isReadOnly(const std::string& path) {
  DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

Status openForOutput(const std::string& path, FileHandle& file) {
  file.value = 0;
  if (isReadOnly(path)) return status::AccessDenied;
  HANDLE opened = nullptr;
  Status outcome = open(path, GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS, opened);
  if (outcome == status::Ok) file.value = reinterpret_cast<std::uintptr_t>(opened);
  return outcome;
}

Status readAll(HANDLE file, std::string& bytes) {
  DWORD got = 0;
  do {
    std::size_t before = bytes.size();
    bytes.resize(before + ChunkBytes);
    if (!ReadFile(file, bytes.data() + before, ChunkBytes, &got, nullptr)) return GetLastError();
    bytes.resize(before + got);
  } while (got != 0);
  return status::Ok;
}

std::string pattern(const std::string& folder) {
  bool joined = folder.empty() || folder.back() == '\\';
  return folder + (joined ? "*" : "\\*");
}

bool isDots(const char* name) {
  return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

FolderEntry entryOf(const WIN32_FIND_DATAA& found) {
  FolderEntry entry{found.cFileName, static_cast<std::uint32_t>(found.dwFileAttributes) & KnownAttributes, 0};
  if (!entry.isFolder()) entry.size = std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
  return entry;
}

bool comesBefore(const FolderEntry& a, const FolderEntry& b) {
  return _stricmp(a.name.c_str(), b.name.c_str()) < 0;
}

}  // namespace

Status Files::attributes(const std::string& path, std::uint32_t& attributes) {
  QuietErrors quiet;
  DWORD found = GetFileAttributesA(path.c_str());
  if (found == INVALID_FILE_ATTRIBUTES) return GetLastError();
  attributes = found & KnownAttributes;
  return status::Ok;
}

Status Files::setAttributes(const std::string& path, std::uint32_t attributes) {
  QuietErrors quiet;
  DWORD settable = attributes & Settable;
  return result(SetFileAttributesA(path.c_str(), settable == 0 ? FILE_ATTRIBUTE_NORMAL : settable));
}

Status Files::list(const std::string& folder, std::vector<FolderEntry>& entries) {
  QuietErrors quiet;
  entries.clear();
  WIN32_FIND_DATAA found;
  HANDLE search = FindFirstFileA(pattern(folder).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) {
    Status failure = GetLastError();
    DWORD attributes = GetFileAttributesA(folder.c_str());
    bool there = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return there && failure == status::FileNotFound ? status::Ok : failure;  // the root of an empty drive
  }
  do {
    if (!isDots(found.cFileName)) entries.push_back(entryOf(found));
  } while (FindNextFileA(search, &found));
  Status last = GetLastError();
  FindClose(search);
  std::sort(entries.begin(), entries.end(), comesBefore);
  return last == ERROR_NO_MORE_FILES ? status::Ok : last;
}

Status Files::read(const std::string& path, std::string& bytes) {
  QuietErrors quiet;
  bytes.clear();
  HANDLE file = nullptr;
  Status outcome = open(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING, file);
  if (outcome != status::Ok) return outcome;
  outcome = readAll(file, bytes);
  CloseHandle(file);
  if (outcome != status::Ok) bytes.clear();
  return outcome;
}

Status Files::openForAppending(const std::string& path, FileHandle& file) {
  QuietErrors quiet;
  Status outcome = openForOutput(path, file);
  if (outcome == status::Ok) SetFilePointer(systemHandle(file), 0, nullptr, FILE_END);
  return outcome;
}

// Emptied after opening: creating anew would be refused for a hidden file.
Status Files::openForWriting(const std::string& path, FileHandle& file) {
  QuietErrors quiet;
  Status outcome = openForOutput(path, file);
  if (outcome == status::Ok) SetEndOfFile(systemHandle(file));
  return outcome;
}

Status Files::write(FileHandle file, const std::string& bytes) {
  QuietErrors quiet;
  DWORD written = 0;
  if (!WriteFile(systemHandle(file), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) {
    return GetLastError();
  }
  return written == bytes.size() ? status::Ok : status::DiskFull;
}

Status Files::close(FileHandle file) {
  return result(CloseHandle(systemHandle(file)));
}

Status Files::copyFile(const std::string& from, const std::string& to) {
  QuietErrors quiet;
  if (isReadOnly(to)) return status::AccessDenied;
  return result(CopyFileA(from.c_str(), to.c_str(), FALSE));
}

Status Files::deleteFile(const std::string& path) {
  QuietErrors quiet;
  return isReadOnly(path) ? status::AccessDenied : result(DeleteFileA(path.c_str()));
}

Status Files::createFolder(const std::string& path) {
  QuietErrors quiet;
  return result(CreateDirectoryA(path.c_str(), nullptr));
}

Status Files::deleteFolder(const std::string& path) {
  QuietErrors quiet;
  return result(RemoveDirectoryA(path.c_str()));
}

Status Files::setAccess(const std::string& path, const std::vector<platform::AccessGrant>& grants) {
  QuietErrors quiet;
  return replaceAccess(path, grants);
}

}  // namespace win32
