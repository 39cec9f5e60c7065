/* Tells again and again what the windows of the machine show: writes C:\windows.txt, one line a window or control, as
   depth|class|number|enabled|focus|scrolls|left|top|right|bottom|text, line breaks in the text as \n.
   Whoever deletes the file gets a new one. */
#include <stdio.h>
#include <string.h>
#include <windows.h>

static FILE* out;
static GUITHREADINFO front;

static void tell(HWND window, int depth) {
  char name[128] = "", text[32000] = "";
  RECT place;
  GetClassNameA(window, name, sizeof name);
  SendMessageTimeoutA(window, WM_GETTEXT, sizeof text, (LPARAM)text, SMTO_ABORTIFHUNG, 2000, NULL);
  GetWindowRect(window, &place);
  fprintf(out, "%d|%s|%d|%d|%d|%d|%ld|%ld|%ld|%ld|", depth, name, depth ? (int)GetDlgCtrlID(window) : 0,
          IsWindowEnabled(window) != 0, front.hwndFocus == window,
          (GetWindowLongA(window, GWL_STYLE) & WS_VSCROLL) != 0, place.left, place.top, place.right, place.bottom);
  for (const char* c = text; *c; ++c)
    if (*c == '\n') fputs("\\n", out);
    else if (*c != '\r') fputc(*c, out);
  fputc('\n', out);
}

static BOOL CALLBACK tellControl(HWND window, LPARAM unused) {
  (void)unused;
  if (IsWindowVisible(window)) tell(window, 1);
  return TRUE;
}

static BOOL CALLBACK tellWindow(HWND window, LPARAM unused) {
  (void)unused;
  if (!IsWindowVisible(window)) return TRUE;
  tell(window, 0);
  EnumChildWindows(window, tellControl, 0);
  return TRUE;
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR arguments, int show) {
  (void)instance, (void)previous, (void)arguments, (void)show;
  for (;; Sleep(30)) {
    if (GetFileAttributesA("C:\\windows.txt") != INVALID_FILE_ATTRIBUTES) continue;
    front.cbSize = sizeof front;
    GetGUIThreadInfo(0, &front);
    out = fopen("C:\\windows.new", "wb");
    if (!out) return 1;
    EnumWindows(tellWindow, 0);
    fclose(out);
    MoveFileA("C:\\windows.new", "C:\\windows.txt");
  }
}
