// The library of common controls.
#pragma once

#include "platform/win32/owner.h"

namespace win32 {

/// Loads it where the system has one, for as long as this lasts: a program that asks for its newer version must have it
/// before its first window.
class CommonControls {
 public:
  CommonControls();

 private:
  OwnedLibrary library_;
};

}  // namespace win32
