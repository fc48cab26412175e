// The classic Windows scheme: black text on a white window.
#include "foundation/os_colour.h"

unsigned OsWindowColour() {
  return 0xFFFFFF;
}

unsigned OsWindowTextColour() {
  return 0x000000;
}
