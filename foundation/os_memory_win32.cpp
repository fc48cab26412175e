#include "foundation/os_memory.h"

#include <windows.h>

void* OsAllocBlock(size_t size) {
  return reinterpret_cast<void*>(LocalAlloc(LMEM_FIXED, size));
}

bool OsFreeBlock(void* block) {
  return LocalFree(reinterpret_cast<HLOCAL>(block)) == nullptr;
}

unsigned OsLastError() {
  return GetLastError();
}
