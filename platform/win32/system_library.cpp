#include "platform/win32/system_library.h"

#include <string>

namespace win32 {

SystemLibrary::SystemLibrary(const char* fileName) {
  char folder[MAX_PATH];
  UINT length = GetSystemDirectoryA(folder, sizeof folder);
  if (length == 0 || length >= sizeof folder) return;
  std::string path = std::string(folder, length) + "\\" + fileName;
  module_ = LoadLibraryA(path.c_str());
}

SystemLibrary::~SystemLibrary() {
  if (module_ != nullptr) FreeLibrary(module_);
}

FARPROC SystemLibrary::address(const char* name) const {
  return module_ == nullptr ? nullptr : GetProcAddress(module_, name);
}

}  // namespace win32
