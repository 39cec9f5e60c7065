/* The tide tables' set-up program: nothing to do on this machine, which it reports by ending with 7. */
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)arguments, (void)show;
  return 7;
}
