/* Stands in for a browser: notes its command line in C:\viewed.txt. */
#include <stdio.h>
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)show;
  FILE* notes = fopen("C:\\viewed.txt", "w");
  if (notes) fprintf(notes, "%s\n", arguments), fclose(notes);
  return 0;
}
