#include "foundation/path.h"

#include "foundation/os_path.h"

int ShownPath(const char* path, char* target, int size) {
  if (size <= 0) return 0;
  int length = 0;
  for (; path && path[length] && length < size - 1; ++length)
    target[length] = path[length] == '/' ? kOsPathSeparator : path[length];
  target[length] = '\0';
  return length;
}
