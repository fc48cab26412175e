#include "foundation/os_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

bool OsAppendToFile(const char* path, const void* data, size_t size) {
  int fd = open(path, O_WRONLY | O_CREAT | O_APPEND, 0644);
  if (fd < 0) return false;
  ssize_t written = write(fd, data, size);
  close(fd);
  return written >= 0 && static_cast<size_t>(written) == size;
}

size_t OsGetTempFolder(char* buffer, size_t size) {
  const char* folder = getenv("TMPDIR");
  if (!folder || !*folder) folder = "/tmp";
  size_t length = strlen(folder);
  bool slash = folder[length - 1] == '/';
  size_t total = length + (slash ? 0 : 1);
  if (total > 80 || total + 1 > size) return 0;
  memcpy(buffer, folder, length);
  if (!slash) buffer[length] = '/';
  buffer[total] = '\0';
  return total;
}
