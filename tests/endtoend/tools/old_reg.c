/* Stands in for the reg.exe of Windows XP: tabs between its columns, and no switch /y. Wine's own does the work. */
#include <stdio.h>
#include <string.h>
#include <windows.h>

int main(void) {
  char command[2048], line[2048];
  const char* words = strchr(GetCommandLineA(), ' ');
  FILE* output;
  if (!words || strstr(words, " /y")) return 1;
  snprintf(command, sizeof command, "C:\\windows\\system32\\reg.exe%s", words);
  output = _popen(command, "r");
  while (output && fgets(line, sizeof line, output)) {
    char* gap;
    while ((gap = strstr(line + 4, "    ")) != NULL) *gap = '\t', memmove(gap + 1, gap + 4, strlen(gap + 4) + 1);
    fputs(line, stdout);
  }
  return output ? _pclose(output) : 1;
}
