#include "platform/win32/machine.h"

#include "platform/win32/windows_api.h"

namespace win32 {

using platform::Status;
using platform::SystemVersion;
namespace status = platform::status;

namespace {

constexpr char PlaceName[] = "QX Installation Assistant";  // without a prefix: one program in each session

constexpr std::size_t LongestPath = 32768;

/// A folder that `function` writes into a buffer; it answers with the size needed where that is too small.
std::string folder(UINT(WINAPI* function)(LPSTR, UINT), std::size_t capacity) {
  std::string path(capacity, '\0');
  UINT length = function(path.data(), static_cast<UINT>(capacity));
  path.resize(length < capacity ? length : 0);
  return path;
}

}  // namespace

Machine::~Machine() {
  releasePlace();
}

Status Machine::systemVersion(SystemVersion& version) {
  OSVERSIONINFOA info = {};
  info.dwOSVersionInfoSize = sizeof info;
  if (!GetVersionExA(&info)) return GetLastError();
  bool windows95Family = info.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS;
  version.platformId = info.dwPlatformId;
  version.major = info.dwMajorVersion;
  version.minor = info.dwMinorVersion;
  // The Windows 95 family repeats the version in the upper half.
  version.build = windows95Family ? LOWORD(info.dwBuildNumber) : info.dwBuildNumber;
  return status::Ok;
}

std::string Machine::windowsFolder(std::size_t capacity) {
  return folder(GetWindowsDirectoryA, capacity);
}

std::string Machine::systemFolder(std::size_t capacity) {
  return folder(GetSystemDirectoryA, capacity);
}

std::string Machine::computerName(std::size_t capacity) {
  std::string name(capacity, '\0');
  DWORD length = static_cast<DWORD>(capacity);
  name.resize(GetComputerNameA(name.data(), &length) ? length : 0);
  return name;
}

std::string Machine::environment(const std::string& name) {
  std::string value;
  DWORD needed = GetEnvironmentVariableA(name.c_str(), nullptr, 0);
  if (needed == 0) return value;
  value.assign(needed, '\0');
  DWORD length = GetEnvironmentVariableA(name.c_str(), value.data(), needed);
  value.resize(length < needed ? length : 0);
  return value;
}

std::string Machine::programPath() {
  std::string path(LongestPath, '\0');
  path.resize(GetModuleFileNameA(nullptr, path.data(), LongestPath));
  return path;
}

std::string Machine::commandLine() {
  return GetCommandLineA();
}

// Refused access means that it exists already, made by a copy that runs for another user.
bool Machine::anotherCopyRuns() {
  releasePlace();
  place_ = CreateMutexA(nullptr, FALSE, PlaceName);
  DWORD outcome = GetLastError();
  return place_ == nullptr ? outcome == ERROR_ACCESS_DENIED : outcome == ERROR_ALREADY_EXISTS;
}

void Machine::releasePlace() {
  if (place_ != nullptr) CloseHandle(place_);
  place_ = nullptr;
}

}  // namespace win32
