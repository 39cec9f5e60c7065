// The part of Files that looks at drives.
#include "platform/win32/files.h"
#include "platform/win32/quiet_errors.h"
#include "platform/win32/system_library.h"

namespace win32 {

using platform::Drive;
using platform::DriveType;
using platform::Status;
namespace status = platform::status;

namespace {

std::string rootFolder(char letter) {
  return std::string(1, letter) + ":\\";
}

// The system counts a drive without a root folder between the unknown and the removable ones.
DriveType portType(UINT systemType) {
  return systemType <= DRIVE_NO_ROOT_DIR ? DriveType::Unknown : static_cast<DriveType>(systemType - 1);
}

// Systems older than Windows 95 OSR2 and NT 4.0, which know no drive above two gigabytes.
Status freeSpaceByClusters(const std::string& root, std::uint64_t& bytes) {
  DWORD sectors = 0;
  DWORD sectorBytes = 0;
  DWORD freeClusters = 0;
  DWORD clusters = 0;
  if (!GetDiskFreeSpaceA(root.c_str(), &sectors, &sectorBytes, &freeClusters, &clusters)) return GetLastError();
  bytes = std::uint64_t{sectors} * sectorBytes * freeClusters;
  return status::Ok;
}

}  // namespace

std::vector<Drive> Files::drives() {
  std::vector<Drive> found;
  DWORD letters = GetLogicalDrives();
  for (int i = 0; i < 26; ++i) {
    if ((letters >> i & 1) == 0) continue;
    char letter = static_cast<char>('A' + i);
    found.push_back({letter, portType(GetDriveTypeA(rootFolder(letter).c_str()))});
  }
  return found;
}

Status Files::volumeLabel(char letter, std::string& label) {
  QuietErrors quiet;
  char name[MAX_PATH + 1] = "";
  label.clear();
  if (!GetVolumeInformationA(rootFolder(letter).c_str(), name, sizeof name, nullptr, nullptr, nullptr, nullptr, 0)) {
    return GetLastError();
  }
  label = name;
  return status::Ok;
}

Status Files::freeSpace(char letter, std::uint64_t& bytes) {
  QuietErrors quiet;
  bytes = 0;
  std::string root = rootFolder(letter);
  SystemLibrary kernel("kernel32.dll");
  auto* freeSpaceEx = kernel.find<decltype(GetDiskFreeSpaceExA)>("GetDiskFreeSpaceExA");
  if (freeSpaceEx == nullptr) return freeSpaceByClusters(root, bytes);
  ULARGE_INTEGER available = {};
  ULARGE_INTEGER total = {};
  if (!freeSpaceEx(root.c_str(), &available, &total, nullptr)) return GetLastError();
  bytes = available.QuadPart;
  return status::Ok;
}

}  // namespace win32
