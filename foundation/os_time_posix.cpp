#include "foundation/os_time.h"

#include <time.h>

unsigned OsTickCount() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<unsigned>(now.tv_sec * 1000ull +
                               static_cast<unsigned long long>(now.tv_nsec) / 1000000u);
}

OsDateTime OsLocalDateTime() {
  time_t now = time(nullptr);
  struct tm parts = {};
  localtime_r(&now, &parts);
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
          parts.tm_hour,        parts.tm_min,     parts.tm_sec};
}
