// The PNG reader on arbitrary files: it never reads outside the file or leaks, a picture it
// accepts is within the limits, and its two pixel orders tell the same picture.
#include <cstdint>
#include <cstring>

#include "foundation/library.h"
#include "images/png.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  PngImage straight, premultiplied;
  int status = DecodePng(data, size, kPngRgbaStraight, &straight);
  int again = DecodePng(data, size, kPngBgraPremultiplied, &premultiplied);
  if (status != again) __builtin_trap();
  if (status != kPngOk) {
    if (straight.pixels || premultiplied.pixels) __builtin_trap();
    return 0;
  }
  if (straight.width < 1 || straight.height < 1 || straight.width > kPngMaxSide ||
      straight.height > kPngMaxSide ||
      int64_t{straight.width} * straight.height > kPngMaxPixels) {
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
