#include "calc/math_lexer.h"

#include "calc/math_expression.h"

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

int MathDigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

uint32_t ScanMathCharConstant(const char* text, unsigned char* bytes, int capacity, int* count,
                              const char** end) {
  *count = 0;
  const char* p = text;
  for (;; ++p) {
    unsigned char c = static_cast<unsigned char>(*p);
    if (c == 0) {
      *end = p;
      return kMathIncomplete;
    }
    if (c == '\'') break;
    if (*count == capacity) {
      *end = p;
      return kMathSyntax;
    }
    bytes[(*count)++] = c;
  }
  *end = p + 1;
  return *count == 0 ? kMathSyntax : kMathOk;
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
