/* Changes the disc in drive D: tells the system's mount manager that a folder of the host, named on the command line,
   is in the drive now. With a second word it agrees to the dialog that asks for the disc, once that is there.
   usage: disc.exe FOLDER [ok] */
#include <stdio.h>
#include <string.h>
#include <windows.h>
#include <winioctl.h>

#define DEFINE_UNIX_DRIVE CTL_CODE('m', 32, METHOD_BUFFERED, FILE_READ_ACCESS | FILE_WRITE_ACCESS)
#define CD_ROM 5

struct drive {
  ULONG size;
  ULONG type;
  ULONG file_system;
  DWORD serial;
  ULONGLONG device;
  WCHAR letter;
  USHORT mount_point_offset;
  USHORT device_offset;
  USHORT label_offset;
};

/* Says OK, or Retry where that is asked, until no dialog is left; whether there was one within twenty seconds. One that
   just comes up may miss its message, and a program that looks for the disc too early asks again. */
static int confirm(void) {
  int seen = 0;
  for (int seconds = 0, quiet = 0; seconds < 20 && quiet < 2; ++seconds, Sleep(1000)) {
    HWND dialog = FindWindowA("#32770", NULL);
    if (dialog && IsWindowVisible(dialog)) {
      PostMessageA(dialog, WM_COMMAND, GetDlgItem(dialog, IDRETRY) ? IDRETRY : IDOK, 0);
      seen = 1;
      quiet = 0;
    } else if (seen) {
      ++quiet;
    }
  }
  return seen;
}

int main(int count, char** words) {
  char buffer[1024] = {0};
  struct drive* drive = (struct drive*)buffer;
  DWORD done;
  HANDLE manager = CreateFileA("\\\\.\\MountPointManager", GENERIC_READ | GENERIC_WRITE, 0, NULL, OPEN_EXISTING, 0, 0);
  if (count < 2 || strlen(words[1]) + 1 > sizeof buffer - sizeof *drive || manager == INVALID_HANDLE_VALUE) return 2;
  drive->size = (ULONG)(sizeof *drive + strlen(words[1]) + 1);
  drive->type = CD_ROM;
  drive->letter = 'd';
  drive->mount_point_offset = sizeof *drive;
  strcpy(buffer + sizeof *drive, words[1]);
  if (!DeviceIoControl(manager, DEFINE_UNIX_DRIVE, buffer, drive->size, NULL, 0, &done, NULL)) return 1;
  return count == 2 || confirm() ? 0 : 3;
}
