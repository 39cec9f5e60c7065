// Starts a program so many times, one after another, and waits for each: the least that so many children cost. Its
// arguments are the program and the number.
#include <windows.h>

#include <cstdlib>

int main(int count, char** words) {
  if (count != 3) return 2;
  for (int left = std::atoi(words[2]); left > 0; --left) {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION child{};
    if (!CreateProcessA(nullptr, words[1], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &child)) return 1;
    WaitForSingleObject(child.hProcess, INFINITE);
    CloseHandle(child.hThread);
    CloseHandle(child.hProcess);
  }
  return 0;
}
