// A program that does nothing: what start-up time and memory cost before any work.
#include <windows.h>

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) { return 0; }
