// The 28-digit decimal floating-point number of the real calculators, its constants and the
// helpers that take it apart and put it together. Values are never taken through binary floating
// point.
#pragma once
#include <cstdint>

constexpr int kDecimalDigits = 28;
constexpr int kDecimalMinExponent = -16384;
constexpr int kDecimalMaxExponent = 16383;

// 0.d1 d2 ... d28 x 10^exponent. signExponent: bit 15 the sign (1 = negative), bits 0-14 the
// exponent as a 15-bit two's-complement number; mantissa: packed BCD, most significant digit
// first, high nibble first. A non-zero value has d1 != 0; zero is sixteen zero bytes.
struct DecimalNumber {
  uint16_t signExponent;
  uint8_t mantissa[14];
};
static_assert(sizeof(DecimalNumber) == 16, "a decimal number is sixteen bytes");

// A constant from its decimal text ("-0.0254", "3.14"); digits past the 28th are dropped.
constexpr DecimalNumber DecimalConstant(const char* text) {
  DecimalNumber value{0, {}};
  bool negative = *text == '-';
  if (negative) ++text;
  int exponent = 0;
  int count = 0;
  bool point = false;
  for (; *text; ++text) {
    if (*text == '.') {
      point = true;
      continue;
    }
    int digit = *text - '0';
    if (count == 0 && digit == 0) {
      if (point) --exponent;
      continue;
    }
    if (!point) ++exponent;
    if (count < kDecimalDigits) {
      int shift = count % 2 == 0 ? 4 : 0;
      value.mantissa[count / 2] = static_cast<uint8_t>(value.mantissa[count / 2] | digit << shift);
      ++count;
    }
  }
  if (count == 0) return value;
  value.signExponent = static_cast<uint16_t>((exponent & 0x7FFF) | (negative ? 0x8000 : 0));
  return value;
}

constexpr DecimalNumber kDecimalZero{0, {}};
constexpr DecimalNumber kDecimalOne = DecimalConstant("1");
constexpr DecimalNumber kDecimalHalf = DecimalConstant("0.5");
constexpr DecimalNumber kDecimalQuarter = DecimalConstant("0.25");
constexpr DecimalNumber kDecimalPi = DecimalConstant("3.141592653589793238462643383");
constexpr DecimalNumber kDecimalE = DecimalConstant("2.718281828459045235360287471");
constexpr DecimalNumber kDecimalSqrt3 = DecimalConstant("1.732050807568877193176604123");
constexpr DecimalNumber kDecimalHalfPi = DecimalConstant("1.570796326794896619231321692");
constexpr DecimalNumber kDecimalSixthPi = DecimalConstant("0.5235987755982988730771072305");
// tan 15 degrees, 2 - sqrt(3).
constexpr DecimalNumber kDecimalTan15 = DecimalConstant("0.2679491924311227513122446453");
constexpr DecimalNumber kDecimalInverseTwoPi = DecimalConstant("0.1591549430918953357688837634");
// One mil in millimetres.
constexpr DecimalNumber kDecimalMil = DecimalConstant("0.0254");
// Pi/180, for the linear equation calculator's degrees.
constexpr DecimalNumber kDecimalDegree = DecimalConstant("0.01745329251994329576923690768");

// A value taken apart, one digit a byte.
struct DecimalParts {
  bool negative;
  int exponent;
  uint8_t digits[kDecimalDigits];
};

bool IsDecimalZero(const DecimalNumber& value);
bool IsDecimalNegative(const DecimalNumber& value);
// The exponent as a signed number.
int DecimalExponent(const DecimalNumber& value);
void UnpackDecimal(const DecimalNumber& value, DecimalParts* parts);
// Flips the sign; zero stays zero.
void NegateDecimal(DecimalNumber* value);
// Drops the sign.
void AbsDecimal(DecimalNumber* value);
// -1, 0 or 1 as a is less than, equal to or greater than b.
int CompareDecimal(const DecimalNumber& a, const DecimalNumber& b);

// Stores 0.d1 d2 ... (count digits, one a byte) x 10^exponent into `out`: leading zeros are
// shifted out, the digits cut to 28 and, when `round`, rounded half up on the first digit cut.
// All-zero digits give zero. Returns 0, or kMathOutOfRange when the exponent leaves its range
// (then `out` is left as it was).
uint32_t StoreDecimal(bool negative, int exponent, const uint8_t* digits, int count, bool round,
                      DecimalNumber* out);

// Keeps the integer part.
void TruncateDecimal(DecimalNumber* value);
// The integer part as a 32-bit integer; `overflowOut` (may be null) tells whether it did not fit
// (the result is then 0).
int32_t DecimalToInt(const DecimalNumber& value, bool* overflowOut);
