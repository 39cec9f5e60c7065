// Entry point of the Windows program.
#include "core/program.h"
#include "platform/win32/windows_api.h"
#include "platform/win32/workstation.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  win32::Workstation machine(instance);
  return assistant::RunProgram(machine);
}
