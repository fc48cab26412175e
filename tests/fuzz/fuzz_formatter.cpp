// FormatText with arbitrary formats. Every argument points at text that reads as a valid string
// both as UTF-8 and as UTF-16, so any conversion may take any slot. Checks that the bounded
// output is a prefix of the full one and that the size returned is the size needed.
#include <cstdint>
#include <cstring>
#include <string>

#include "foundation/formatter.h"
#include "foundation/library.h"

namespace {
constexpr int kSlots = 16;
alignas(8) const char16_t kSafeText[] = u"Ab\u00e9";
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  int limit = data[0];
  std::string format(reinterpret_cast<const char*>(data + 1), size - 1);
  format = format.c_str();  // up to the first terminator
  int percents = 0;
  for (char c : format)
    percents += c == '%';
  if (percents > kSlots) return 0;

  const void* p = kSafeText;
#define SLOTS p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p
  int needed = FormatStr(nullptr, 0, format.c_str(), SLOTS);
  std::string full(static_cast<size_t>(needed) + 8, '#');
  if (FormatStr(&full[0], needed, format.c_str(), SLOTS) != needed) __builtin_trap();
  if (strlen(full.c_str()) != static_cast<size_t>(needed - 1)) __builtin_trap();
  std::string bounded(static_cast<size_t>(limit) + 8, '#');
  if (FormatStr(&bounded[0], limit, format.c_str(), SLOTS) != needed) __builtin_trap();
#undef SLOTS
  if (limit > 0) {
    size_t stored = strlen(bounded.c_str());
    if (stored != static_cast<size_t>(limit - 1 < needed - 1 ? limit - 1 : needed - 1))
      __builtin_trap();
    if (full.compare(0, stored, bounded, 0, stored) != 0) __builtin_trap();
  }
  if (bounded[static_cast<size_t>(limit)] != '#') __builtin_trap();
  return 0;
}
