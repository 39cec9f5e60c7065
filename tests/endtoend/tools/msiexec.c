/* Stands in for the system's msiexec: notes its command line in C:\msiexec.txt and ends with the number that
   C:\msiexec-code.txt holds. */
#include <stdio.h>
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)arguments, (void)show;
  FILE* notes = fopen("C:\\msiexec.txt", "a");
  if (notes) fprintf(notes, "%s\n", GetCommandLineA()), fclose(notes);
  int code = 87;
  FILE* wanted = fopen("C:\\msiexec-code.txt", "r");
  if (wanted && fscanf(wanted, "%d", &code) != 1) code = 87;
  if (wanted) fclose(wanted);
  return code;
}
