#include "foundation/os_errmsg.h"

// Win32 codes mean nothing to this system's error strings.
int OsGetErrorText(unsigned, char* buffer, int size) {
  if (size > 0) buffer[0] = '\0';
  return -1;
}
