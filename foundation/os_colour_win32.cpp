#include "foundation/os_colour.h"

#include <windows.h>

unsigned OsWindowColour() {
  return GetSysColor(COLOR_WINDOW);
}

unsigned OsWindowTextColour() {
  return GetSysColor(COLOR_WINDOWTEXT);
}
