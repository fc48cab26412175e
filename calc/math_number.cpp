#include "calc/math_number.h"

#include "calc/math_lexer.h"

const char* ParseMathNumber(const char* text, int32_t* value) {
  const char* p = SkipMathBlanks(text);
  bool signed_ = *p == '+' || *p == '-';
  bool negative = *p == '-';
  if (signed_) ++p;
  uint32_t base = 10;
  if (!signed_ && p[0] == '0' && (p[1] == 'x' || p[1] == 'X')) {
    base = 16;
    p += 2;
  } else if (!signed_ && p[0] == '0') {
    base = 8;  // the '0' itself is read as a digit
  }
  const char* digits = p;
  uint32_t magnitude = 0;
  for (int digit; (digit = MathDigitValue(*p)) >= 0 && static_cast<uint32_t>(digit) < base; ++p)
    magnitude = magnitude * base + static_cast<uint32_t>(digit);
  *value = static_cast<int32_t>(negative ? 0u - magnitude : magnitude);
  return p == digits ? nullptr : p;
}
