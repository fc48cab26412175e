// The deflate on arbitrary bytes: its output stays within DeflateBound and inflates back to the
// input.
#include <cstdint>
#include <cstring>
#include <vector>

#include "foundation/library.h"
#include "images/deflate.h"
#include "images/inflate.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  std::vector<uint8_t> packed(DeflateBound(size));
  size_t written = 0;
  if (DeflateRaw(data, size, packed.data(), &written, nullptr) != kDeflateOk) __builtin_trap();
  if (written > packed.size()) __builtin_trap();
  std::vector<uint8_t> back(size + 1);
  size_t done = 0, consumed = 0;
  if (InflateRaw(packed.data(), written, back.data(), back.size(), &done, &consumed) !=
          kInflateOk ||
      done != size || consumed != written || (size && memcmp(back.data(), data, size) != 0))
    __builtin_trap();
  return 0;
}
