// For the 32-bit program on the Windows 95 family: the compiler's own runtime calls three Unicode functions that exist
// there but always fail. Each import pointer is defined here instead, leading to the ANSI twin, so that the program
// does not import them at all. The names must be the linker's own; this file is part of every program (see
// CMakeLists.txt), because a library would be searched before the runtime asks.
#include "platform/win32/windows_api.h"

namespace {

/// A name as the ANSI functions take it; null stays null.
class AnsiName {
 public:
  explicit AnsiName(const wchar_t* name) : given_(name != nullptr) {
    if (given_) WideCharToMultiByte(CP_ACP, 0, name, -1, text_, sizeof text_ - 1, nullptr, nullptr);
  }
  const char* get() const { return given_ ? text_ : nullptr; }

 private:
  bool given_;
  char text_[MAX_PATH] = "";
};

HANDLE WINAPI AnsiCreateSemaphore(SECURITY_ATTRIBUTES* security, LONG initial, LONG maximum, const wchar_t* name) {
  return CreateSemaphoreA(security, initial, maximum, AnsiName(name).get());
}

HMODULE WINAPI AnsiGetModuleHandle(const wchar_t* name) {
  return GetModuleHandleA(AnsiName(name).get());
}

HMODULE WINAPI AnsiLoadLibrary(const wchar_t* name) {
  return LoadLibraryA(AnsiName(name).get());
}

}  // namespace

decltype(&CreateSemaphoreW) ImportedCreateSemaphore __asm__("__imp__CreateSemaphoreW@16") = AnsiCreateSemaphore;
decltype(&GetModuleHandleW) ImportedGetModuleHandle __asm__("__imp__GetModuleHandleW@4") = AnsiGetModuleHandle;
decltype(&LoadLibraryW) ImportedLoadLibrary __asm__("__imp__LoadLibraryW@4") = AnsiLoadLibrary;
