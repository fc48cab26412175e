#include "foundation/os_window.h"

#include <windows.h>

void OsDestroyWindow(void* window) {
  DestroyWindow(static_cast<HWND>(window));
}
