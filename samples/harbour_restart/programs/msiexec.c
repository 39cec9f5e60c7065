/* Stands in for the system's msiexec where no package restarts the machine by itself: lets the real one do the work, and
   ends with 1641, as though the machine were on its way down, when that was to install beacon.msi and succeeded. */
#include <stdio.h>
#include <string.h>
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)show;
  static char command[32768];
  STARTUPINFOA how = {.cb = sizeof how};
  PROCESS_INFORMATION started;
  DWORD code = 1;
  snprintf(command, sizeof command, "C:\\windows\\system32\\msiexec.exe %s", arguments);
  if (!CreateProcessA(NULL, command, NULL, NULL, FALSE, 0, NULL, NULL, &how, &started)) return 1;
  WaitForSingleObject(started.hProcess, INFINITE);
  GetExitCodeProcess(started.hProcess, &code);
  return code == 0 && strstr(arguments, "/i") && strstr(arguments, "beacon.msi") ? 1641 : (int)code;
}
