// A library of the system that the program can do without: loaded by its full path, so that no file beside the
// program can take its place, and asked for its functions by name.
#pragma once

#include "platform/win32/owner.h"

namespace win32 {

class SystemLibrary {
 public:
  /// `fileName` such as "msi.dll", looked for in the system folder only. One that is not there has no functions.
  explicit SystemLibrary(const char* fileName);

  /// The function of that name and type; null when library or function is missing on this system.
  template <class Function>
  Function* find(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(address(name)));
  }

 private:
  FARPROC address(const char* name) const;

  OwnedLibrary library_;
};

}  // namespace win32
