// The deflate decompressor (raw blocks and the zlib wrapper) for the PNG reader. The whole input
// is in memory and the output goes to a buffer of a size the caller fixes: a stream that would
// write more fails instead of growing, so a hostile stream costs no more memory than its caller
// allowed.
#pragma once
#include <cstddef>
#include <cstdint>

enum InflateStatus : int {
  kInflateOk = 0,
  kInflateTruncated,    // the input ends inside the stream
  kInflateBadData,      // an invalid block, code or distance
  kInflateTooLarge,     // the output would not fit in the buffer
  kInflateBadHeader,    // zlib header: method, window or check bits
  kInflateBadChecksum,  // zlib trailer: Adler-32 of the output
  kInflateNoMemory,
};

// Inflates raw deflate blocks from `in` into `out` (capacity `outSize`). On success `*written` is
// the output length and `*consumed` the input bytes up to the end of the last block.
int InflateRaw(const uint8_t* in, size_t inSize, uint8_t* out, size_t outSize, size_t* written,
               size_t* consumed);
// The same for a zlib stream: header, raw blocks, Adler-32 of the output.
int InflateZlib(const uint8_t* in, size_t inSize, uint8_t* out, size_t outSize, size_t* written);

uint32_t Adler32(uint32_t adler, const uint8_t* data, size_t size);
const char* InflateStatusText(int status);
