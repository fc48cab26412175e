// The string code view on arbitrary units: every input, codes or not, gives a text.
#include <cstdint>
#include <cstring>

#include "foundation/library.h"
#include "foundation/memory.h"
#include "tools/string_code.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  int count = static_cast<int>(size / 2);
  auto* units = static_cast<char16_t*>(AllocMem(static_cast<size_t>(count + 1) * 2, 1));
  if (!units) return 0;
  memcpy(units, data, static_cast<size_t>(count) * 2);
  char* text = StringCodeText(units, count);
  if (!text || !*text) __builtin_trap();
  FreeMem(text);
  FreeMem(units);
  return 0;
}
