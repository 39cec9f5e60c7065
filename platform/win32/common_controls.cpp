#include "platform/win32/common_controls.h"

namespace win32 {

namespace {

// From Windows XP on, the program's manifest chooses the version of the library, and it does so only for the bare name.
// The system itself then says where that name leads; before XP nothing does, and nothing is loaded.
bool ManifestsCount() {
  DWORD version = GetVersion();
  int major = LOBYTE(LOWORD(version));
  int minor = HIBYTE(LOWORD(version));
  return major > 5 || (major == 5 && minor >= 1);
}

}  // namespace

CommonControls::CommonControls() {
  if (!ManifestsCount()) return;
  library_.reset(LoadLibraryA("comctl32.dll"));
  if (!library_) return;
  auto initialise =
      reinterpret_cast<void(WINAPI*)()>(reinterpret_cast<void*>(GetProcAddress(library_.get(), "InitCommonControls")));
  if (initialise != nullptr) initialise();
}

}  // namespace win32
