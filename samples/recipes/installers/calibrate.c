/* What a package runs by itself, as a custom action: writes the depth that it is given beside itself, and ends with 5
   where it is given none; /forget deletes that file. */
#include <string.h>
#include <windows.h>

int WINAPI WinMain(HINSTANCE program, HINSTANCE before, LPSTR words, int show) {
  char file[MAX_PATH];
  HANDLE written;
  DWORD done;
  (void)program, (void)before, (void)show;
  GetModuleFileNameA(NULL, file, sizeof file);
  strcpy(strrchr(file, '\\') + 1, "depth.txt");
  if (strcmp(words, "/forget") == 0) return DeleteFileA(file) ? 0 : 1;
  if (words[0] == '\0') return 5;
  written = CreateFileA(file, GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, 0, NULL);
  if (written == INVALID_HANDLE_VALUE) return 1;
  WriteFile(written, words, (DWORD)strlen(words), &done, NULL);
  CloseHandle(written);
  return 0;
}
