/* Stands in for the part of Wine that a restart calls: notes its command line in C:\restart.txt and restarts nothing. */
#include <stdio.h>
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)arguments, (void)show;
  FILE* notes = fopen("C:\\restart.txt", "a");
  if (notes) fprintf(notes, "%s\n", GetCommandLineA()), fclose(notes);
  return 0;
}
