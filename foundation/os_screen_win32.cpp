#include "foundation/os_screen.h"

#include <windows.h>

int OsScreenHeight() {
  return GetSystemMetrics(SM_CYSCREEN);
}

void OsDrawScreenText(int x, int y, const char* text) {
  wchar_t wide[261];
  int length = MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, 261);
  if (length <= 0) return;
  HDC screen = GetDC(nullptr);
  if (!screen) return;
  TextOutW(screen, x, y, wide, length - 1);
  ReleaseDC(nullptr, screen);
}
