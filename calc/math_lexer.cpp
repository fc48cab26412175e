#include "calc/math_lexer.h"

namespace {

unsigned char FoldCase(unsigned char c) {
  return c >= 'a' && c <= 'z' ? static_cast<unsigned char>(c - 'a' + 'A') : c;
}

}  // namespace

const char* SkipMathBlanks(const char* text) {
  while (*text && static_cast<unsigned char>(*text) <= 32)
    ++text;
  return text;
}

int MatchMathPrefix(const char* text, const char* pattern) {
  int length = 0;
  for (; pattern[length]; ++length) {
    if (FoldCase(static_cast<unsigned char>(text[length])) !=
        FoldCase(static_cast<unsigned char>(pattern[length])))
      return 0;
  }
  return length;
}

uint32_t MathIntegerSqrt(uint32_t x) {
  // Two bits of 4x per step give floor(2 sqrt(x)); halving it gives floor(sqrt(x)).
  constexpr int kSteps = 17;
  constexpr uint64_t kRounding = 0;
  uint64_t value = static_cast<uint64_t>(x) << 2;
  uint64_t root = 0;
  uint64_t remainder = 0;
  for (int step = kSteps - 1; step >= 0; --step) {
    remainder = (remainder << 2) | ((value >> (2 * step)) & 3);
    root <<= 1;
    uint64_t trial = (root << 1) | 1;
    if (remainder >= trial) {
      remainder -= trial;
      root |= 1;
    }
  }
  return static_cast<uint32_t>((root + kRounding) >> 1);
}
