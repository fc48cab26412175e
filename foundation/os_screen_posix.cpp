#include "foundation/os_screen.h"

#include <cstdio>

// There is no screen to paint on: a note is a line on stderr, and the "screen" is as high as the
// frame's default size.
int OsScreenHeight() {
  return 768;
}

void OsDrawScreenText(int, int, const char* text) {
  fprintf(stderr, "%s\n", text);
}
