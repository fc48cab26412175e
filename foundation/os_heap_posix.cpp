#include "foundation/os_heap.h"

#include <cstdlib>

// The blocks of a heap are chained, each behind a link to the one allocated before it.
struct OsHeap {
  void* newest;
};

OsHeap* OsCreateHeap() {
  return static_cast<OsHeap*>(calloc(1, sizeof(OsHeap)));
}

void* OsHeapAlloc(OsHeap* heap, size_t size) {
  void** block = static_cast<void**>(malloc(sizeof(max_align_t) + size));
  if (!block) return nullptr;
  *block = heap->newest;
  heap->newest = block;
  return reinterpret_cast<char*>(block) + sizeof(max_align_t);
}

void OsDestroyHeap(OsHeap* heap) {
  if (!heap) return;
  for (void* block = heap->newest; block;) {
    void* older = *static_cast<void**>(block);
    free(block);
    block = older;
  }
  free(heap);
}
