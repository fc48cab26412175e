#include "comm/byte_queue.h"

#include <cstring>

#include "foundation/memory.h"

bool InitByteQueue(ByteQueue* queue, size_t capacity, int owner) {
  *queue = ByteQueue{};
  queue->owner = owner;
  queue->data = static_cast<unsigned char*>(AllocMem(capacity, owner));
  if (!queue->data) return false;
  queue->capacity = capacity;
  return true;
}

void FreeByteQueue(ByteQueue* queue) {
  FreeMem(queue->data);
  FreeMem(queue->retired);
  *queue = ByteQueue{};
}

bool AppendBytes(ByteQueue* queue, const void* bytes, size_t count) {
  if (count == 0) return true;
  if (queue->capacity - queue->end < count) {
    size_t length = ByteQueueLength(queue);
    if (!queue->pinned && queue->capacity - length >= count && queue->start > 0) {
      // Room enough once the consumed front is given back; nobody reads the old places.
      memmove(queue->data, queue->data + queue->start, length);
    } else {
      size_t capacity = queue->capacity ? queue->capacity : 16;
      while (capacity - length < count) {
        if (capacity > (~size_t{0} >> 2)) return false;
        capacity *= 2;
      }
      auto* data = static_cast<unsigned char*>(AllocMem(capacity, queue->owner));
      if (!data) return false;
      memcpy(data, queue->data + queue->start, length);
      // The pinned reader goes on reading the block it was given; a block in between (grown and
      // outgrown during one pin) has no reader.
      if (queue->pinned && !queue->retired)
        queue->retired = queue->data;
      else
        FreeMem(queue->data);
      queue->data = data;
      queue->capacity = capacity;
    }
    queue->end = length;
    queue->start = 0;
  }
  memcpy(queue->data + queue->end, bytes, count);
  queue->end += count;
  return true;
}

const unsigned char* PinBytes(ByteQueue* queue, size_t* length) {
  *length = ByteQueueLength(queue);
  queue->pinned = true;
  return queue->data + queue->start;
}

void ConsumeBytes(ByteQueue* queue, size_t count) {
  size_t length = ByteQueueLength(queue);
  queue->start += count < length ? count : length;
  if (queue->start == queue->end) queue->start = queue->end = 0;
  queue->pinned = false;
  FreeMem(queue->retired);
  queue->retired = nullptr;
}

int TakeByte(ByteQueue* queue) {
  if (queue->start == queue->end) return -1;
  int byte = queue->data[queue->start++];
  if (queue->start == queue->end) queue->start = queue->end = 0;
  return byte;
}
