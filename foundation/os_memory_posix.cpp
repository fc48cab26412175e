#include "foundation/os_memory.h"

#include <cerrno>
#include <cstdlib>

void* OsAllocBlock(size_t size) {
  return malloc(size);
}

bool OsFreeBlock(void* block) {
  free(block);
  return true;
}

unsigned OsLastError() {
  return static_cast<unsigned>(errno);
}
