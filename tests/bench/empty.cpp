// A program that does nothing: what start-up time and memory cost before any work. With a window to its name it shows
// what those cost a program that uses the system's window library at all.
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
#ifdef WITH_WINDOW
  DestroyWindow(CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr));
#else
  (void)instance;
#endif
  return 0;
}
