// Platform service: the clock.
#pragma once

// Milliseconds since an arbitrary start, wrapping at 32 bits.
unsigned OsTickCount();

struct OsDateTime {
  int year, month, day, hour, minute, second;
};
// The local date and time.
OsDateTime OsLocalDateTime();
