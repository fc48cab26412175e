// The inflate on arbitrary streams: the first two bytes choose the output's room (up to 1 MB).
// It never writes past that room, and a stream it accepts inflates the same into exactly the
// room it needs and fails with one byte less.
#include <cstdint>
#include <cstring>
#include <vector>

#include "foundation/library.h"
#include "images/inflate.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  if (size < 2) return 0;
  size_t room = (size_t{data[0]} << 8 | data[1]) * 16;
  data += 2, size -= 2;
  std::vector<uint8_t> out(room + 16, 0xA5);
  size_t written, consumed;
  int raw = InflateRaw(data, size, out.data(), room, &written, &consumed);
  for (size_t i = room; i < out.size(); ++i) {
    if (out[i] != 0xA5) __builtin_trap();
  }
  if (written > room || (raw == kInflateOk && consumed > size)) __builtin_trap();
  int wrapped = InflateZlib(data, size, out.data(), room, &written);
  if (wrapped != kInflateOk) return 0;
  std::vector<uint8_t> first(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(written));
  std::vector<uint8_t> exact(written + 1);
  size_t again;
  if (InflateZlib(data, size, exact.data(), written, &again) != kInflateOk || again != written ||
      (written && memcmp(exact.data(), first.data(), written) != 0)) {
    __builtin_trap();
  }
  if (written && InflateZlib(data, size, exact.data(), written - 1, &again) != kInflateTooLarge)
    __builtin_trap();
  return 0;
}
