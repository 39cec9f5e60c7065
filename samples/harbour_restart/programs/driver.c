/* The driver's set-up program: notes that it ran, and asks for a restart by ending with 3010. */
#include <stdio.h>
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)arguments, (void)show;
  FILE* notes = fopen("C:\\Harbour Restart.txt", "a");
  if (!notes) return 1;
  fputs("Driver\n", notes);
  fclose(notes);
  return 3010;
}
