// The part of the file adapter that looks at drives.
#include "platform/win32/files.h"
#include "platform/win32/last_status.h"
#include "platform/win32/quiet_errors.h"
#include "platform/win32/system_library.h"

namespace win32 {

using platform::Drive;
using platform::DriveType;
using platform::Status;

namespace {

std::string RootFolder(char letter) {
  return std::string(1, letter) + ":\\";
}

// The system counts a drive without a root folder between the unknown and the removable ones.
DriveType PortType(UINT systemType) {
  return systemType <= DRIVE_NO_ROOT_DIR ? DriveType::Unknown : static_cast<DriveType>(systemType - 1);
}

// Systems older than Windows 95 OSR2 and NT 4.0, which know no drive above two gigabytes.
Status FreeSpaceByClusters(const std::string& root, std::uint64_t& bytes) {
  DWORD sectors = 0;
  DWORD sectorBytes = 0;
  DWORD freeClusters = 0;
  DWORD clusters = 0;
  if (!GetDiskFreeSpaceA(root.c_str(), &sectors, &sectorBytes, &freeClusters, &clusters)) return LastStatus();
  bytes = std::uint64_t{sectors} * sectorBytes * freeClusters;
  return Status::Ok;
}

}  // namespace

std::vector<Drive> FilesAdapter::drives() {
  std::vector<Drive> found;
  DWORD letters = GetLogicalDrives();
  for (int i = 0; i < 26; ++i) {
    if ((letters >> i & 1) == 0) continue;
    char letter = static_cast<char>('A' + i);
    found.push_back({letter, PortType(GetDriveTypeA(RootFolder(letter).c_str()))});
  }
  return found;
}

Status FilesAdapter::volumeLabel(char letter, std::string& label) {
  QuietErrors quiet;
  char name[MAX_PATH + 1] = "";
  label.clear();
  if (!GetVolumeInformationA(RootFolder(letter).c_str(), name, sizeof name, nullptr, nullptr, nullptr, nullptr, 0)) {
    return LastStatus();
  }
  label = name;
  return Status::Ok;
}

Status FilesAdapter::freeSpace(char letter, std::uint64_t& bytes) {
  QuietErrors quiet;
  bytes = 0;
  std::string root = RootFolder(letter);
  SystemLibrary kernel("kernel32.dll");
  auto* askFreeSpace = kernel.find<decltype(GetDiskFreeSpaceExA)>("GetDiskFreeSpaceExA");
  if (askFreeSpace == nullptr) return FreeSpaceByClusters(root, bytes);
  ULARGE_INTEGER available = {};
  ULARGE_INTEGER total = {};
  if (!askFreeSpace(root.c_str(), &available, &total, nullptr)) return LastStatus();
  bytes = available.QuadPart;
  return Status::Ok;
}

}  // namespace win32
