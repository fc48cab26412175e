#include "csource/source_path.h"

#include <cstring>

namespace {

// Folds "." and ".." parts in place; a ".." that can't go up stays.
void Fold(char* path) {
  char* start = path;
  if (path[0] && path[1] == ':') start += 2;
  bool rooted = *start == '/';
  char* w = rooted ? start + 1 : start;
  char* r = w;
  char* base = w;  // nothing before this can be folded
  char* stop = r + strlen(r);
  while (r < stop) {
    char* e = r;
    while (e < stop && *e != '/')
      ++e;
    size_t length = static_cast<size_t>(e - r);
    char* next = e < stop ? e + 1 : e;  // before the part is moved over its terminator
    if (length == 0 || (length == 1 && r[0] == '.')) {
      // empty or "." part: dropped
    } else if (length == 2 && r[0] == '.' && r[1] == '.' && w > base) {
      // drop the last part written
      --w;
      while (w > base && w[-1] != '/')
        --w;
    } else {
      if (length == 2 && r[0] == '.' && r[1] == '.') {
        memmove(w, r, length);
        w += length;
        *w++ = '/';
        base = w;
      } else {
        memmove(w, r, length);
        w += length;
        *w++ = '/';
      }
    }
    r = next;
  }
  if (w > start + (rooted ? 1 : 0) && w[-1] == '/') --w;
  *w = '\0';
}

}  // namespace

bool JoinSourcePath(const char* folder, const char* name, char* out, size_t size) {
  size_t nameLength = strlen(name);
  size_t folderLength = IsAbsolutePath(name) || !folder || !*folder ? 0 : strlen(folder);
  if (folderLength + 1 + nameLength + 1 > size) return false;
  size_t n = 0;
  if (folderLength) {
    memcpy(out, folder, folderLength);
    n = folderLength;
    out[n++] = '/';
  }
  memcpy(out + n, name, nameLength + 1);
  for (char* p = out; *p; ++p) {
    if (*p == '\\') *p = '/';
  }
  Fold(out);
  if (!*out) strcpy(out, ".");
  return true;
}

void SplitSourcePath(const char* path, char* folder, size_t folderSize, const char** name) {
  const char* slash = strrchr(path, '/');
  const char* backslash = strrchr(path, '\\');
  if (backslash && (!slash || backslash > slash)) slash = backslash;
  if (!slash) {
    if (folderSize) strncpy(folder, ".", folderSize);
    *name = path;
    return;
  }
  size_t length = static_cast<size_t>(slash - path);
  if (length == 0) length = 1;  // the root itself
  if (length >= folderSize) length = folderSize ? folderSize - 1 : 0;
  if (folderSize) {
    memcpy(folder, path, length);
    folder[length] = '\0';
  }
  *name = slash + 1;
}
