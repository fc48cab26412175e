#include "foundation/path.h"

#include <cstring>

#include "foundation/os_path.h"

namespace {

char Folded(char c) {
  if (c == '\\') return '/';
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

}  // namespace

int ShownPath(const char* path, char* target, int size) {
  if (size <= 0) return 0;
  int length = 0;
  for (; path && path[length] && length < size - 1; ++length)
    target[length] = path[length] == '/' ? kOsPathSeparator : path[length];
  target[length] = '\0';
  return length;
}

bool IsAbsolutePath(const char* path) {
  return path[0] == '/' || path[0] == '\\' || (path[0] && path[1] == ':');
}

bool SamePath(const char* a, const char* b) {
  for (; Folded(*a) == Folded(*b); ++a, ++b)
    if (!*a) return true;
  return false;
}

bool JoinPath(const char* folder, const char* name, char* out, int size) {
  size_t folderLength = IsAbsolutePath(name) || !folder ? 0 : strlen(folder);
  size_t nameLength = strlen(name);
  bool slash =
      folderLength > 0 && folder[folderLength - 1] != '/' && folder[folderLength - 1] != '\\';
  if (size <= 0 || folderLength + (slash ? 1 : 0) + nameLength + 1 > static_cast<size_t>(size))
    return false;
  memmove(out, folder, folderLength);
  if (slash) out[folderLength++] = '/';
  memmove(out + folderLength, name, nameLength + 1);
  return true;
}
