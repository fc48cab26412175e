// Platform service: a private heap whose blocks are never freed one by one; the heap is destroyed
// whole. The language table lives in one.
#pragma once
#include <cstddef>

struct OsHeap;

OsHeap* OsCreateHeap();
void* OsHeapAlloc(OsHeap* heap, size_t size);
void OsDestroyHeap(OsHeap* heap);
