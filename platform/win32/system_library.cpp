#include "platform/win32/system_library.h"

#include <string>

namespace win32 {

SystemLibrary::SystemLibrary(const char* fileName) {
  char folder[MAX_PATH];
  UINT length = GetSystemDirectoryA(folder, sizeof folder);
  if (length == 0 || length >= sizeof folder) return;
  std::string path = std::string(folder, length) + "\\" + fileName;
  library_.reset(LoadLibraryA(path.c_str()));
}

FARPROC SystemLibrary::address(const char* name) const {
  return library_ ? GetProcAddress(library_.get(), name) : nullptr;
}

}  // namespace win32
