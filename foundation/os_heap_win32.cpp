#include "foundation/os_heap.h"

#include <windows.h>

OsHeap* OsCreateHeap() {
  return reinterpret_cast<OsHeap*>(HeapCreate(0, 0, 0));
}

void* OsHeapAlloc(OsHeap* heap, size_t size) {
  return HeapAlloc(reinterpret_cast<HANDLE>(heap), 0, size);
}

void OsDestroyHeap(OsHeap* heap) {
  if (heap) HeapDestroy(reinterpret_cast<HANDLE>(heap));
}
