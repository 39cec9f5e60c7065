// A program that does nothing: what start-up time and memory cost before any work. WITH_LIBRARIES has the system load
// what the installation program imports; WITH_WINDOW makes a window as well.
#include <windows.h>

#include <ole2.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR arguments, int) {
  (void)instance;
#ifdef WITH_LIBRARIES
  if (arguments[0] != '\0') {  // never: one function of each library
    RegCloseKey(nullptr);
    GdiFlush();
    MessageBeep(0);
    CoUninitialize();
    SysFreeString(nullptr);
  }
#else
  (void)arguments;
#endif
#ifdef WITH_WINDOW
  DestroyWindow(CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr));
#endif
  return 0;
}
