#include "platform/win32/common_controls.h"

#include "platform/win32/windows_api.h"

namespace win32 {

namespace {

// From Windows XP on, the program's manifest chooses the version of the library, and it does so only for the bare name.
// The system itself then says where that name leads; before XP nothing does, and nothing is loaded.
bool manifestsCount() {
  DWORD version = GetVersion();
  int major = LOBYTE(LOWORD(version));
  int minor = HIBYTE(LOWORD(version));
  return major > 5 || (major == 5 && minor >= 1);
}

}  // namespace

void loadCommonControls() {
  if (!manifestsCount()) return;
  HMODULE library = LoadLibraryA("comctl32.dll");  // stays for the life of the program
  if (library == nullptr) return;
  auto initialise =
      reinterpret_cast<void(WINAPI*)()>(reinterpret_cast<void*>(GetProcAddress(library, "InitCommonControls")));
  if (initialise != nullptr) initialise();
}

}  // namespace win32
