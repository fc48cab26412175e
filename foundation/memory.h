// The one allocator. Every block carries the size asked for and the owner number of its call
// site, and all live blocks are chained, so that a wrong or doubled free is caught and logged and
// every block still alive at shutdown is reported.
#pragma once
#include <cstddef>

// A block of `size` bytes (not cleared) tagged with `owner`, or null after a screen note.
void* AllocMem(size_t size, int owner);
// Frees a block of AllocMem; null is ignored, anything else that is not a live block is logged.
void FreeMem(void* pointer);
// Logs one line per live block, newest first, and returns their count.
int CheckMemLeak();

// Called by the library's start-up and shutdown only.
void StartMemoryManager();
void StopMemoryManager();
bool IsMemoryManagerReady();

// Block layout, for the dump and for tests that damage a block on purpose.
constexpr unsigned kMemTag = 0x47415451;  // "QTAG"
// Head before the caller's pointer: self address and trailer offset (pointer-sized on 64-bit
// builds, so the caller keeps the system allocator's alignment).
constexpr size_t kMemHeadSize = sizeof(void*) == 4 ? 8 : 16;
// Payload bytes behind the caller's pointer: the request rounded up to 4, plus 8.
constexpr size_t MemPayloadSize(size_t request) {
  return ((request + 3) & ~size_t{3}) + 8;
}
