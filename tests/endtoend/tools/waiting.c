/* A component that takes its time: makes C:\waiting.txt, and ends once C:\go.txt is there. */
#include <windows.h>

static int exists(const char* path) { return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES; }

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)arguments, (void)show;
  CloseHandle(CreateFileA("C:\\waiting.txt", GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, 0, NULL));
  for (int tenths = 0; tenths < 300 && !exists("C:\\go.txt"); ++tenths) Sleep(100);
  return 0;
}
