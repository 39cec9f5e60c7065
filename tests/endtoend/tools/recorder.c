/* Stands in for a command of the system: notes its command line in C:\recorded.txt and does nothing. */
#include <stdio.h>
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)arguments, (void)show;
  FILE* notes = fopen("C:\\recorded.txt", "a");
  if (notes) fprintf(notes, "%s\n", GetCommandLineA()), fclose(notes);
  return 0;
}
