#include "platform/win32/clock.h"

#include "platform/win32/system_library.h"

namespace win32 {

ClockAdapter::ClockAdapter() = default;
ClockAdapter::~ClockAdapter() = default;

platform::LocalTime ClockAdapter::now() {
  SYSTEMTIME time = {};
  GetLocalTime(&time);
  return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds};
}

// The multimedia timer is finer; a machine without multimedia has the plain one.
std::uint32_t ClockAdapter::ticks() {
  if (multimedia_ == nullptr) multimedia_ = std::make_unique<SystemLibrary>("winmm.dll");
  auto* fine = multimedia_->find<DWORD WINAPI()>("timeGetTime");
  return fine != nullptr ? fine() : GetTickCount();
}

void ClockAdapter::sleep(std::uint32_t milliseconds) {
  Sleep(milliseconds);
}

}  // namespace win32
