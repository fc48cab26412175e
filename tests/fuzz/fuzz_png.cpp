// The PNG reader on arbitrary files: it never reads outside the file or leaks, a picture it
// accepts is within the limits, and its two pixel orders tell the same picture. The chunks' CRCs
// are made right before the second decoding, so that mutations reach past the CRC check.
#include <cstdint>
#include <cstring>
#include <vector>

#include "foundation/library.h"
#include "images/png.h"

namespace {

void FixCrcs(std::vector<uint8_t>* file) {
  size_t pos = 8;
  while (file->size() >= 12 && pos <= file->size() - 12) {
    uint8_t* p = file->data() + pos;
    size_t length = size_t{p[0]} << 24 | p[1] << 16 | p[2] << 8 | p[3];
    if (length > file->size() - pos - 12) break;
    uint32_t crc = Crc32(0, p + 4, length + 4);
    for (int i = 0; i < 4; ++i)
      p[8 + length + i] = static_cast<uint8_t>(crc >> (24 - 8 * i));
    pos += 12 + length;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  PngImage straight, premultiplied;
  if (DecodePng(data, size, kPngRgbaStraight, &straight) == kPngOk) FreePngImage(&straight);
  std::vector<uint8_t> fixed(data, data + size);
  FixCrcs(&fixed);
  int status = DecodePng(fixed.data(), size, kPngRgbaStraight, &straight);
  int again = DecodePng(fixed.data(), size, kPngBgraPremultiplied, &premultiplied);
  if (status != again) __builtin_trap();
  if (status != kPngOk) {
    if (straight.pixels || premultiplied.pixels) __builtin_trap();
    return 0;
  }
  if (straight.width < 1 || straight.height < 1 || straight.width > kPngMaxSide ||
      straight.height > kPngMaxSide || int64_t{straight.width} * straight.height > kPngMaxPixels) {
    __builtin_trap();
  }
  size_t count = static_cast<size_t>(straight.width) * straight.height;
  const uint8_t* s = reinterpret_cast<const uint8_t*>(straight.pixels);
  const uint8_t* p = reinterpret_cast<const uint8_t*>(premultiplied.pixels);
  for (size_t i = 0; i < count; ++i, s += 4, p += 4) {
    unsigned a = s[3];
    for (int c = 0; c < 3; ++c) {
      if (p[2 - c] != (s[c] * a + 127) / 255) __builtin_trap();
    }
    if (p[3] != a) __builtin_trap();
  }
  FreePngImage(&straight);
  FreePngImage(&premultiplied);
  return 0;
}
