#include <unistd.h>

#include "editor/current_folder.h"

int CurrentFolder(char* buffer, int size) {
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
