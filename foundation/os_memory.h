// Platform service: the system allocator behind every AllocMem block.
#pragma once
#include <cstddef>

// A fixed block of `size` bytes, or null when the system refuses.
void* OsAllocBlock(size_t size);
// Gives the block back; false when the system reports a failure.
bool OsFreeBlock(void* block);
// The system's last error code (GetLastError, errno on POSIX).
unsigned OsLastError();
