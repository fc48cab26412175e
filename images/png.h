// The PNG reader: every colour type and bit depth, the five filters and Adam7 interlacing, with
// the inflate of inflate.h. The picture comes back as 32-bit pixels, one uint32_t each, rows top
// down with no padding, so it can be copied straight into a top-down 32-bit DIB section.
//
// Limits keep a hostile file's cost bounded: each side at most kPngMaxSide pixels, the whole
// picture at most kPngMaxPixels, the inflated data exactly the size the header implies.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr int kPngMaxSide = 16384;
constexpr int64_t kPngMaxPixels = int64_t{1} << 25;  // 32 Mi pixels: 128 MB of output

enum PngPixelOrder : int {
  // Bytes B, G, R, A in memory with colour premultiplied by alpha: what AlphaBlend expects of a
  // 32-bit DIB section (0xAARRGGBB as a little-endian uint32_t).
  kPngBgraPremultiplied = 0,
  // Bytes R, G, B, A in memory, colour not premultiplied: the file's own values, for comparing
  // with other decoders.
  kPngRgbaStraight = 1,
};

enum PngStatus : int {
  kPngOk = 0,
  kPngNotPng,      // the signature is wrong
  kPngTruncated,   // the file ends inside a chunk or before IEND
  kPngBadCrc,      // a chunk's CRC does not match
  kPngBadHeader,   // IHDR missing, misplaced or invalid (type, depth, method)
  kPngTooLarge,    // dimensions beyond the limits
  kPngBadPalette,  // PLTE or tRNS invalid, or a pixel names an entry PLTE lacks
  kPngBadChunk,    // an unknown critical chunk or chunks out of order
  kPngBadData,     // the image data does not inflate to exactly the scanlines
  kPngBadFilter,   // a scanline's filter type is not 0-4
  kPngNoMemory,
};

struct PngImage {
  int width;
  int height;
  uint32_t* pixels;  // width * height pixels from AllocMem; null when decoding failed
};

// Decodes a whole PNG file held in memory. On failure `image` is empty (null pixels, zero size).
int DecodePng(const uint8_t* data, size_t size, PngPixelOrder order, PngImage* image);
void FreePngImage(PngImage* image);
const char* PngStatusText(int status);

// The CRC-32 of PNG chunks (and zip, gzip): `crc` is 0 for a fresh start.
uint32_t Crc32(uint32_t crc, const uint8_t* data, size_t size);
