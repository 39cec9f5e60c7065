/* Stands in for the part of Wine that starts a machine and that a restart calls: a start is passed on to Wine's own
   program, kept as logon.exe; of anything else the command line is noted in C:\restart.txt and nothing restarts. */
#include <stdio.h>
#include <string.h>
#include <windows.h>

static int start_machine(void) {
  char command[] = "C:\\windows\\system32\\logon.exe --init";
  STARTUPINFOA how = {sizeof how};
  PROCESS_INFORMATION started;
  DWORD code = 1;
  if (!CreateProcessA(NULL, command, NULL, NULL, FALSE, 0, NULL, NULL, &how, &started)) return 1;
  WaitForSingleObject(started.hProcess, INFINITE);
  GetExitCodeProcess(started.hProcess, &code);
  return (int)code;
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)show;
  if (strcmp(arguments, "--init") == 0) return start_machine();
  FILE* notes = fopen("C:\\restart.txt", "a");
  if (notes) fprintf(notes, "%s\n", GetCommandLineA()), fclose(notes);
  return 0;
}
