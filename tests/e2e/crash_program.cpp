// Installs Quill's crash report and faults on purpose, as the argument says: "divide" (integer
// division by zero), "access" (a write through a bad pointer) or "bare" (an exception raised
// with no parameters). Quill.exe itself has no way to crash on request.
#include <windows.h>

#include <cstring>

#include "frame/crash_filter.h"

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  InstallCrashReport();
  // No crash dialog after the report: the test waits for the process to end.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  volatile int zero = 0;
  if (strcmp(argv[1], "divide") == 0) return 100 / zero;
  if (strcmp(argv[1], "access") == 0) {
    *reinterpret_cast<volatile int*>(static_cast<uintptr_t>(0x10 + zero)) = 1;
    return 3;
  }
  if (strcmp(argv[1], "bare") == 0) {
    RaiseException(0xE0514C01u, 0, 0, nullptr);
    return 4;
  }
  return 2;
}
