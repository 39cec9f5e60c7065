/* The chart plotter's set-up program: leaves a file beside the suite's others and ends with 0. */
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)show;
  HANDLE file = CreateFileA("C:\\Harbour Charts.txt", GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, 0, NULL);
  DWORD written = 0;
  if (file == INVALID_HANDLE_VALUE) return 1;
  WriteFile(file, arguments, lstrlenA(arguments), &written, NULL);
  CloseHandle(file);
  return 0;
}
