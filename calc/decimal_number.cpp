#include "calc/decimal_number.h"

#include "calc/math_expression.h"

bool IsDecimalZero(const DecimalNumber& value) {
  // A normalised value is zero exactly when its first digit is.
  return (value.mantissa[0] & 0xF0) == 0;
}

bool IsDecimalNegative(const DecimalNumber& value) {
  return (value.signExponent & 0x8000) != 0 && !IsDecimalZero(value);
}

int DecimalExponent(const DecimalNumber& value) {
  int exponent = value.signExponent & 0x7FFF;
  return exponent >= 0x4000 ? exponent - 0x8000 : exponent;
}

void UnpackDecimal(const DecimalNumber& value, DecimalParts* parts) {
  parts->negative = IsDecimalNegative(value);
  parts->exponent = DecimalExponent(value);
  for (int i = 0; i < kDecimalDigits; ++i) {
    uint8_t pair = value.mantissa[i / 2];
    parts->digits[i] = static_cast<uint8_t>(i % 2 == 0 ? pair >> 4 : pair & 0x0F);
  }
}

void NegateDecimal(DecimalNumber* value) {
  if (!IsDecimalZero(*value)) value->signExponent ^= 0x8000;
}

void AbsDecimal(DecimalNumber* value) {
  value->signExponent &= 0x7FFF;
}

namespace {

// Compares magnitudes.
int CompareMagnitude(const DecimalNumber& a, const DecimalNumber& b) {
  bool zeroA = IsDecimalZero(a);
  bool zeroB = IsDecimalZero(b);
  if (zeroA || zeroB) return zeroA == zeroB ? 0 : zeroA ? -1 : 1;
  int exponentA = DecimalExponent(a);
  int exponentB = DecimalExponent(b);
  if (exponentA != exponentB) return exponentA < exponentB ? -1 : 1;
  for (int i = 0; i < 14; ++i) {
    if (a.mantissa[i] != b.mantissa[i]) return a.mantissa[i] < b.mantissa[i] ? -1 : 1;
  }
  return 0;
}

}  // namespace

int CompareDecimal(const DecimalNumber& a, const DecimalNumber& b) {
  bool negativeA = IsDecimalNegative(a);
  bool negativeB = IsDecimalNegative(b);
  if (negativeA != negativeB) return negativeA ? -1 : 1;
  int magnitude = CompareMagnitude(a, b);
  return negativeA ? -magnitude : magnitude;
}

uint32_t StoreDecimal(bool negative, int exponent, const uint8_t* digits, int count, bool round,
                      DecimalNumber* out) {
  int first = 0;
  while (first < count && digits[first] == 0)
    ++first;
  if (first == count) {
    *out = kDecimalZero;
    return kMathOk;
  }
  exponent -= first;
  uint8_t kept[kDecimalDigits] = {};
  int available = count - first;
  int keep = available < kDecimalDigits ? available : kDecimalDigits;
  for (int i = 0; i < keep; ++i)
    kept[i] = digits[first + i];
  if (round && available > kDecimalDigits && digits[first + kDecimalDigits] >= 5) {
    int i = kDecimalDigits - 1;
    for (; i >= 0 && kept[i] == 9; --i)
      kept[i] = 0;
    if (i >= 0) {
      ++kept[i];
    } else {
      // 0.999... rounded up to 1.000...
      kept[0] = 1;
      ++exponent;
    }
  }
  if (exponent < kDecimalMinExponent || exponent > kDecimalMaxExponent) return kMathOutOfRange;
  out->signExponent = static_cast<uint16_t>((exponent & 0x7FFF) | (negative ? 0x8000 : 0));
  for (int i = 0; i < 14; ++i)
    out->mantissa[i] = static_cast<uint8_t>(kept[2 * i] << 4 | kept[2 * i + 1]);
  return kMathOk;
}

void TruncateDecimal(DecimalNumber* value) {
  int exponent = DecimalExponent(*value);
  if (IsDecimalZero(*value) || exponent >= kDecimalDigits) return;
  if (exponent <= 0) {
    *value = kDecimalZero;
    return;
  }
  for (int i = exponent; i < kDecimalDigits; ++i)
    value->mantissa[i / 2] &= static_cast<uint8_t>(i % 2 == 0 ? 0x0F : 0xF0);
}

int32_t DecimalToInt(const DecimalNumber& value, bool* overflowOut) {
  if (overflowOut) *overflowOut = false;
  DecimalParts parts;
  UnpackDecimal(value, &parts);
  if (IsDecimalZero(value) || parts.exponent <= 0) return 0;
  // 2147483648 has ten digits; anything longer cannot fit.
  int64_t magnitude = 0;
  if (parts.exponent <= 10) {
    for (int i = 0; i < parts.exponent; ++i)
      magnitude = magnitude * 10 + parts.digits[i];
  }
  int64_t limit = parts.negative ? INT64_C(2147483648) : INT64_C(2147483647);
  if (parts.exponent > 10 || magnitude > limit) {
    if (overflowOut) *overflowOut = true;
    return 0;
  }
  return static_cast<int32_t>(parts.negative ? -magnitude : magnitude);
}
