#include "foundation/os_text_order.h"

#include <windows.h>

#include <cstring>

int OsCompareText(const char* name, int length, const char* other) {
  // lstrcmpA wants terminated strings; a name longer than the buffer is compared by its start.
  char copy[1024];
  if (length >= static_cast<int>(sizeof copy)) length = sizeof copy - 1;
  memcpy(copy, name, static_cast<size_t>(length));
  copy[length] = '\0';
  return lstrcmpA(copy, other);
}
