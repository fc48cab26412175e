// The deflate compressor for the project archive: hash chains over a 32 KB window with lazy
// matching, each block sent stored, with the fixed codes or with its own codes, whichever is
// smallest. The whole input is in memory and the output goes to a buffer of DeflateBound bytes.
#pragma once
#include <cstddef>
#include <cstdint>

// Called between blocks with the input bytes done so far; false stops the compression.
struct DeflateProgress {
  bool (*report)(void* context, size_t done);
  void* context;
};

enum DeflateStatus : int {
  kDeflateOk = 0,
  kDeflateNoMemory,
  kDeflateStopped,  // the progress callback said stop
};

// The most output DeflateRaw can give for `size` input bytes (every block stored).
size_t DeflateBound(size_t size);
// Compresses `in` into raw deflate blocks in `out` (at least DeflateBound(size) bytes); on
// success `*written` is the output length. `progress` may be null.
int DeflateRaw(const uint8_t* in, size_t size, uint8_t* out, size_t* written,
               const DeflateProgress* progress);
