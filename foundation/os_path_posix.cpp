#include "foundation/os_path.h"

#include <sys/stat.h>
#include <unistd.h>

extern const char kOsPathSeparator = '/';

size_t OsGetModulePath(char* buffer, size_t size) {
  if (size < 2) return 0;
  ssize_t length = readlink("/proc/self/exe", buffer, size - 1);
  if (length <= 0) return 0;
  buffer[length] = '\0';
  return static_cast<size_t>(length);
}

void OsClearReadOnly(const char* systemPath) {
  struct stat info;
  if (stat(systemPath, &info) == 0 && !(info.st_mode & S_IWUSR)) {
    chmod(systemPath, info.st_mode | S_IWUSR);
  }
}

int OsCurrentFolder(char* buffer, int size) {
  if (size <= 0) return 0;
  buffer[0] = 0;
  if (!getcwd(buffer, static_cast<size_t>(size))) {
    buffer[0] = 0;
    return 0;
  }
  int length = 0;
  while (buffer[length])
    ++length;
  return length;
}
