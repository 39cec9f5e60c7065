#include "platform/win32/machine.h"

#include "platform/win32/last_status.h"

namespace win32 {

using platform::Status;
using platform::SystemVersion;

namespace {

constexpr char PlaceName[] = "QX Installation Assistant";  // without a prefix: one program in each session

constexpr std::size_t LongestPath = 32768;

// Room for the facts, in characters, the terminating zero included: what does not fit is not told.
constexpr UINT WindowsFolderSize = 255;
constexpr UINT SystemFolderSize = 256;
constexpr DWORD ComputerNameSize = 256;

/// A folder that `function` writes into a buffer; it answers with the size needed where that is too small.
std::string FolderFrom(UINT(WINAPI* function)(LPSTR, UINT), UINT size) {
  std::string path(size, '\0');
  UINT length = function(path.data(), size);
  path.resize(length < size ? length : 0);
  return path;
}

}  // namespace

std::string ComputerName(DWORD size) {
  std::string name(size, '\0');
  DWORD length = size;
  name.resize(GetComputerNameA(name.data(), &length) ? length : 0);
  return name;
}

Status MachineAdapter::systemVersion(SystemVersion& version) {
  OSVERSIONINFOA info = {};
  info.dwOSVersionInfoSize = sizeof info;
  if (!GetVersionExA(&info)) return LastStatus();
  bool windows95Family = info.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS;
  version.platformId = info.dwPlatformId;
  version.major = info.dwMajorVersion;
  version.minor = info.dwMinorVersion;
  // The Windows 95 family repeats the version in the upper half.
  version.build = windows95Family ? LOWORD(info.dwBuildNumber) : info.dwBuildNumber;
  return Status::Ok;
}

std::string MachineAdapter::windowsFolder() {
  return FolderFrom(GetWindowsDirectoryA, WindowsFolderSize);
}

std::string MachineAdapter::systemFolder() {
  return FolderFrom(GetSystemDirectoryA, SystemFolderSize);
}

std::string MachineAdapter::computerName() {
  return ComputerName(ComputerNameSize);
}

std::string MachineAdapter::environment(const std::string& name) {
  std::string value;
  DWORD needed = GetEnvironmentVariableA(name.c_str(), nullptr, 0);
  if (needed == 0) return value;
  value.assign(needed, '\0');
  DWORD length = GetEnvironmentVariableA(name.c_str(), value.data(), needed);
  value.resize(length < needed ? length : 0);
  return value;
}

std::string MachineAdapter::programPath() {
  std::string path(LongestPath, '\0');
  path.resize(GetModuleFileNameA(nullptr, path.data(), LongestPath));
  return path;
}

std::string MachineAdapter::commandLine() {
  return GetCommandLineA();
}

bool MachineAdapter::isLeadByte(unsigned char byte) {
  return IsDBCSLeadByteEx(CP_ACP, byte) != FALSE;
}

// Refused access means that it exists already, made by a copy that runs for another user.
bool MachineAdapter::anotherCopyRuns() {
  place_.reset();
  HANDLE place = CreateMutexA(nullptr, FALSE, PlaceName);
  DWORD outcome = GetLastError();
  place_.reset(place);
  return place == nullptr ? outcome == ERROR_ACCESS_DENIED : outcome == ERROR_ALREADY_EXISTS;
}

}  // namespace win32
