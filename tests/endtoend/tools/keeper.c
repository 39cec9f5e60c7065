/* Keeps a machine awake: while it runs, the system's own processes stay, and other programs start without delay.
   Meanwhile it answers what tests ask of the registry below HKEY_LOCAL_MACHINE. A test writes C:\asked.txt, a line for each
   key, "delete KEY" or "export KEY"; what is exported stands in C:\answered.reg, in the older form of .reg files, with every
   data but numbers in hexadecimal digits. The question goes when the answer is whole. */
#include <stdio.h>
#include <string.h>
#include <windows.h>

static const char asked[] = "C:\\asked.txt";

static void write_value(FILE* out, const char* name, DWORD type, const BYTE* data, DWORD size) {
  fputc('"', out);
  for (; *name; ++name) fprintf(out, strchr("\\\"", *name) ? "\\%c" : "%c", *name);
  if (type == REG_DWORD && size == 4) {
    fprintf(out, "\"=dword:%08lx\n", *(const DWORD*)data);
    return;
  }
  fprintf(out, type == REG_BINARY ? "\"=hex:" : "\"=hex(%lx):", type);
  for (DWORD i = 0; i < size; ++i) fprintf(out, i ? ",%02x" : "%02x", data[i]);
  fputc('\n', out);
}

static void export_key(FILE* out, HKEY parent, const char* path, const char* name) {
  static BYTE data[1 << 16];
  char value[1024], child[256], below[2048];
  HKEY key;
  if (RegOpenKeyExA(parent, name, 0, KEY_READ, &key)) return;
  fprintf(out, "[HKEY_LOCAL_MACHINE\\%s]\n", path);
  for (DWORD i = 0;; ++i) {
    DWORD length = sizeof value, size = sizeof data, type;
    if (RegEnumValueA(key, i, value, &length, NULL, &type, data, &size)) break;
    write_value(out, value, type, data, size);
  }
  for (DWORD i = 0; !RegEnumKeyA(key, i, child, sizeof child); ++i) {
    snprintf(below, sizeof below, "%s\\%s", path, child);
    export_key(out, key, below, child);
  }
  RegCloseKey(key);
}

static void answer(void) {
  char line[2048];
  FILE* questions = fopen(asked, "r");
  FILE* out = fopen("C:\\answered.reg", "wb");
  if (!questions || !out) return;
  fputs("REGEDIT4\n", out);
  while (fgets(line, sizeof line, questions)) {
    line[strcspn(line, "\r\n")] = 0;
    if (!strncmp(line, "export ", 7)) export_key(out, HKEY_LOCAL_MACHINE, line + 7, line + 7);
    if (!strncmp(line, "delete ", 7)) RegDeleteTreeA(HKEY_LOCAL_MACHINE, line + 7);
  }
  fclose(questions);
  fclose(out);
  DeleteFileA(asked);
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)arguments, (void)show;
  for (;; Sleep(10))
    if (GetFileAttributesA(asked) != INVALID_FILE_ATTRIBUTES) answer();
}
