#include <direct.h>

#include "editor/current_folder.h"
#include "foundation/unicode.h"

int CurrentFolder(char* buffer, int size) {
  if (size <= 0) return 0;
  buffer[0] = 0;
  wchar_t wide[1024];
  if (!_wgetcwd(wide, 1024)) return 0;
  int length = Utf16ToUtf8(reinterpret_cast<const char16_t*>(wide), -1, buffer, size - 1);
  if (length <= 0 || length >= size) {
    buffer[0] = 0;
    return 0;
  }
  buffer[length] = 0;
  for (int i = 0; i < length; ++i)
    if (buffer[i] == '\\') buffer[i] = '/';
  return length;
}
