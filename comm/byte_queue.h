// A growable byte queue: append at the back, consume from the front. One reader may pin the
// queued bytes (an overlapped write reads them while the writer's thread goes on): while pinned,
// appending neither moves nor frees the pinned region; a block outgrown meanwhile is kept until
// the reader consumes and so unpins. The caller provides the locking.
#pragma once
#include <cstddef>

struct ByteQueue {
  unsigned char* data;
  size_t start;  // first queued byte
  size_t end;    // behind the last queued byte
  size_t capacity;
  unsigned char* retired;  // the pinned reader's old block, freed on unpinning
  bool pinned;
  int owner;
};

// False when the first block cannot be had.
bool InitByteQueue(ByteQueue* queue, size_t capacity, int owner);
void FreeByteQueue(ByteQueue* queue);

inline size_t ByteQueueLength(const ByteQueue* queue) {
  return queue->end - queue->start;
}
// False (nothing appended) when a larger block cannot be had.
bool AppendBytes(ByteQueue* queue, const void* bytes, size_t count);
// The queued bytes, pinned until ConsumeBytes.
const unsigned char* PinBytes(ByteQueue* queue, size_t* length);
// Removes `count` (at most the length) bytes from the front and unpins.
void ConsumeBytes(ByteQueue* queue, size_t count);
// The first byte, removed; -1 when the queue is empty.
int TakeByte(ByteQueue* queue);
