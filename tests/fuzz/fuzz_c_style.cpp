// The coding-style converter on arbitrary text: the first byte chooses the style. The output
// holds the input's tokens in order, and converting it again changes nothing.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/library.h"
#include "foundation/text_builder.h"
#include "tools/c_style.h"

namespace {

std::vector<std::string> Tokens(const char* p, const char* end) {
  std::vector<std::string> tokens;
  bool lineStart = true;
  if (end - p >= 3 && memcmp(p, "\xEF\xBB\xBF", 3) == 0) p += 3;
  while (p < end) {
    if (*p == '\r' || *p == '\n') {
      lineStart = true;
      ++p;
    } else if (*p != '\0' && static_cast<unsigned char>(*p) <= 32) {
      ++p;
    } else {
      int kind;
      const char* after = ScanCToken(p, end, lineStart, &kind);
      tokens.emplace_back(p, after);
      p = after;
      lineStart = false;
    }
  }
  return tokens;
}

std::string Convert(const char* text, size_t size, const CStyle& style) {
  TextBuffer out;
  InitText(&out, 1);
  if (!ConvertCStyle(text, size, style, &out)) __builtin_trap();
  std::string result(TextOf(&out), out.length);
  FreeText(&out);
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = (InitKLib(nullptr, nullptr), true);
  (void)started;
  if (size < 1) return 0;
  uint8_t bits = data[0];
  CStyle style = {(bits & 1) != 0, 1 + (bits >> 4), (bits & 2) != 0,
                  (bits & 4) != 0, (bits & 8) != 0, (bits & 0x80) != 0};
  const char* text = reinterpret_cast<const char*>(data + 1);
  std::string once = Convert(text, size - 1, style);
  if (Tokens(once.data(), once.data() + once.size()) != Tokens(text, text + size - 1))
    __builtin_trap();
  if (Convert(once.data(), once.size(), style) != once) __builtin_trap();
  return 0;
}
