#include "foundation/os_time.h"

#include <windows.h>

unsigned OsTickCount() {
  return GetTickCount();
}

OsDateTime OsLocalDateTime() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}
