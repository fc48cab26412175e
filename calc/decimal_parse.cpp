#include "calc/decimal_parse.h"

#include "calc/decimal_registers.h"
#include "calc/math_expression.h"
#include "calc/math_lexer.h"

namespace {

// A 96-bit integer, most significant word first.
constexpr int kWords = 3;
constexpr int kCharBytes = 12;
constexpr int kHexDigits = 24;
constexpr int kBinaryDigits = 96;

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// value = value * 2^bits + digit, for 1 to 8 bits.
void ShiftIn(uint32_t* words, int bits, uint32_t digit) {
  for (int i = 0; i < kWords; ++i) {
    uint32_t next = i + 1 < kWords ? words[i + 1] >> (32 - bits) : digit;
    words[i] = words[i] << bits | next;
  }
}

// A first digit with its top bit set makes the literal negative: sign-extend its `bits` bits to
// 96 and take the magnitude of the two's complement.
void NegateFrom(uint32_t* words, int bits) {
  for (int bit = bits; bit < 32 * kWords; ++bit)
    words[kWords - 1 - bit / 32] |= 1u << (bit % 32);
  uint32_t carry = 1;
  for (int i = kWords - 1; i >= 0; --i) {
    uint64_t sum = static_cast<uint64_t>(~words[i]) + carry;
    words[i] = static_cast<uint32_t>(sum);
    carry = static_cast<uint32_t>(sum >> 32);
  }
}

// Shift-and-adjust of the 96 bits into 28 digits; a carry out of them is out of range.
uint32_t StoreBinary(const uint32_t* words, bool negative, DecimalNumber* out) {
  uint8_t digits[kDecimalDigits] = {};
  for (int bit = 32 * kWords - 1; bit >= 0; --bit) {
    int carry = (words[kWords - 1 - bit / 32] >> (bit % 32)) & 1;
    for (int i = kDecimalDigits - 1; i >= 0; --i) {
      int digit = digits[i] * 2 + carry;
      carry = digit >= 10;
      digits[i] = static_cast<uint8_t>(digit - (carry ? 10 : 0));
    }
    if (carry) return kMathOutOfRange;
  }
  return StoreDecimal(negative, kDecimalDigits, digits, kDecimalDigits, false, out);
}

uint32_t ReadCharacters(const char** cursor, DecimalNumber* out) {
  unsigned char bytes[kCharBytes];
  int count = 0;
  const char* end = *cursor;
  uint32_t error = ScanMathCharConstant(*cursor + 1, bytes, kCharBytes, &count, &end);
  *cursor = end;
  if (error != kMathOk) return kMathSyntax;
  uint32_t words[kWords] = {};
  for (int i = 0; i < count; ++i)
    ShiftIn(words, 8, bytes[i]);
  return StoreBinary(words, false, out);
}

// "0x" or "0b" at *cursor; `bits` is 4 or 1 per digit.
uint32_t ReadBinaryInteger(const char** cursor, int bits, DecimalNumber* out) {
  const char* p = *cursor + 2;
  int base = 1 << bits;
  int limit = bits == 4 ? kHexDigits : kBinaryDigits;
  uint32_t words[kWords] = {};
  int first = -1;
  int significant = 0;
  for (;; ++p) {
    if (*p == ',') continue;
    int digit = MathDigitValue(*p);
    if (digit < 0 || digit >= base) break;
    if (first < 0) first = digit;
    if (significant == 0 && digit == 0) continue;
    if (++significant > limit) {
      *cursor = p;
      return kMathOutOfRange;
    }
    ShiftIn(words, bits, static_cast<uint32_t>(digit));
  }
  *cursor = p;
  if (first < 0) return kMathSyntax;
  bool negative = first >= base / 2;
  // A negative literal has no leading zeros: its width is its significant digits.
  if (negative) NegateFrom(words, significant * bits);
  return StoreBinary(words, negative, out);
}

uint32_t ReadDecimal(const char** cursor, DecimalNumber* out) {
  const char* p = *cursor;
  uint8_t digits[kDecimalDigits];
  int count = 0;
  int exponent = 0;
  bool point = false;
  bool anyDigit = false;
  for (;; ++p) {
    if (*p == ',') continue;
    if (*p == '.') {
      if (point) {
        *cursor = p;
        return kMathSyntax;
      }
      point = true;
      continue;
    }
    if (!IsDigit(*p)) break;
    anyDigit = true;
    uint8_t digit = static_cast<uint8_t>(*p - '0');
    if (count == 0 && digit == 0) {
      if (point) --exponent;
      continue;
    }
    if (!point && exponent <= kDecimalMaxExponent) ++exponent;
    if (count < kDecimalDigits) digits[count++] = digit;
  }
  if (!anyDigit) {
    *cursor = p;
    return kMathSyntax;
  }
  if (exponent > kDecimalMaxExponent) {
    *cursor = p;
    return kMathOutOfRange;
  }
  if (Lower(*p) == 'e') {
    ++p;
    bool negative = *p == '-';
    if (*p == '+' || *p == '-') ++p;
    if (!IsDigit(*p)) {
      *cursor = p;
      return kMathSyntax;
    }
    int power = 0;
    for (; IsDigit(*p); ++p) {
      if (power <= kDecimalMaxExponent) power = power * 10 + (*p - '0');
    }
    if (power > kDecimalMaxExponent) {
      *cursor = p;
      return kMathOutOfRange;
    }
    exponent += negative ? -power : power;
    if (exponent < kDecimalMinExponent || exponent > kDecimalMaxExponent) {
      *cursor = p;
      return kMathOutOfRange;
    }
  }
  *cursor = p;
  // Digits past the 28th are dropped, not rounded.
  return StoreDecimal(false, exponent, digits, count, false, out);
}

}  // namespace

uint32_t ParseDecimalNumber(const char** cursor, DecimalNumber* out) {
  SetLastDecimalRegister(kNoDecimalRegister);
  *out = kDecimalZero;
  const char* p = *cursor;
  char c = Lower(*p);
  if (c == '\'') return ReadCharacters(cursor, out);
  if (c == '0' && Lower(p[1]) == 'x') return ReadBinaryInteger(cursor, 4, out);
  if (c == '0' && Lower(p[1]) == 'b') return ReadBinaryInteger(cursor, 1, out);
  if (c == '@') {
    char letter = Lower(p[1]);
    if (letter < 'a' || letter > 'j') {
      *cursor = p + 1;
      return kMathBadVariable;
    }
    *out = *DecimalRegister(letter - 'a');
    SetLastDecimalRegister(letter - 'a');
    *cursor = p + 2;
    return kMathOk;
  }
  int length = MatchMathPrefix(p, "pi");
  if (length) {
    *out = kDecimalPi;
  } else if ((length = MatchMathPrefix(p, "mil")) || (length = MatchMathPrefix(p, "mm"))) {
    *out = kDecimalMil;
  } else if (c == 'e') {
    *out = kDecimalE;
    length = 1;
  }
  if (length) {
    *cursor = p + length;
    return kMathOk;
  }
  return ReadDecimal(cursor, out);
}
