// The library of common controls.
#pragma once

namespace win32 {

/// Loads it where the system has one: a program that asks for its newer version must have it before its first window.
void loadCommonControls();

}  // namespace win32
