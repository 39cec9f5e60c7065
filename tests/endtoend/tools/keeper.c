/* Keeps a machine awake: while it runs, the system's own processes stay, and other programs start without delay. */
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)arguments, (void)show;
  Sleep(INFINITE);
  return 0;
}
