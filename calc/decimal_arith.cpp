#include "calc/decimal_arith.h"

#include "calc/math_expression.h"

namespace {

// The addition's working field: a carry digit, the 28 digits and two guard digits.
constexpr int kAddField = 1 + kDecimalDigits + 2;

// a -= b over `count` digits, most significant first; returns the borrow out of the top.
int SubtractDigits(uint8_t* a, const uint8_t* b, int count) {
  int borrow = 0;
  for (int i = count - 1; i >= 0; --i) {
    int digit = a[i] - b[i] - borrow;
    borrow = digit < 0;
    a[i] = static_cast<uint8_t>(digit + (borrow ? 10 : 0));
  }
  return borrow;
}

// Multiplication and division work on the digits four at a time.
constexpr int kGroupDigits = 4;
constexpr uint32_t kGroupBase = 10000;
constexpr int kGroups = kDecimalDigits / kGroupDigits;

void ToGroups(const uint8_t* digits, uint32_t* groups) {
  for (int i = 0; i < kGroups; ++i) {
    const uint8_t* d = digits + i * kGroupDigits;
    groups[i] = ((d[0] * 10u + d[1]) * 10u + d[2]) * 10u + d[3];
  }
}

bool GroupsAtLeast(const uint32_t* a, const uint32_t* b, int count) {
  for (int i = 0; i < count; ++i) {
    if (a[i] != b[i]) return a[i] > b[i];
  }
  return true;
}

void SubtractGroups(uint32_t* a, const uint32_t* b, int count) {
  uint32_t borrow = 0;
  for (int i = count - 1; i >= 0; --i) {
    uint32_t subtrahend = b[i] + borrow;
    borrow = a[i] < subtrahend;
    a[i] = a[i] + (borrow ? kGroupBase : 0) - subtrahend;
  }
}

}  // namespace

uint32_t AddDecimal(DecimalNumber* a, const DecimalNumber& b) {
  if (IsDecimalZero(b)) return kMathOk;
  if (IsDecimalZero(*a)) {
    *a = b;
    return kMathOk;
  }
  DecimalParts left;
  DecimalParts right;
  UnpackDecimal(*a, &left);
  UnpackDecimal(b, &right);
  if (left.exponent < right.exponent) {
    DecimalParts swap = left;
    left = right;
    right = swap;
  }
  // The smaller operand moves right by the exponents' difference; what falls off the field is lost.
  int shift = left.exponent - right.exponent;
  uint8_t x[kAddField] = {};
  uint8_t y[kAddField] = {};
  for (int i = 0; i < kDecimalDigits; ++i) {
    x[1 + i] = left.digits[i];
    if (shift < kAddField && 1 + i + shift < kAddField) y[1 + i + shift] = right.digits[i];
  }
  bool negative = left.negative;
  if (left.negative == right.negative) {
    int carry = 0;
    for (int i = kAddField - 1; i >= 0; --i) {
      int digit = x[i] + y[i] + carry;
      carry = digit >= 10;
      x[i] = static_cast<uint8_t>(digit - (carry ? 10 : 0));
    }
  } else {
    uint8_t saved[kAddField];
    for (int i = 0; i < kAddField; ++i)
      saved[i] = x[i];
    if (SubtractDigits(x, y, kAddField)) {
      // It borrowed: the other way round, with the other operand's sign.
      for (int i = 0; i < kAddField; ++i)
        x[i] = y[i];
      SubtractDigits(x, saved, kAddField);
      negative = right.negative;
    }
  }
  return StoreDecimal(negative, left.exponent + 1, x, kAddField, true, a);
}

uint32_t SubtractDecimal(DecimalNumber* a, const DecimalNumber& b) {
  DecimalNumber flipped = b;
  NegateDecimal(&flipped);
  return AddDecimal(a, flipped);
}

uint32_t MultiplyDecimal(DecimalNumber* a, const DecimalNumber& b) {
  if (IsDecimalZero(*a) || IsDecimalZero(b)) {
    *a = kDecimalZero;
    return kMathOk;
  }
  DecimalParts left;
  DecimalParts right;
  UnpackDecimal(*a, &left);
  UnpackDecimal(b, &right);
  uint32_t x[kGroups];
  uint32_t y[kGroups];
  ToGroups(left.digits, x);
  ToGroups(right.digits, y);
  // Group i of 0.X times group j of 0.Y weighs 10000^-(i+j+2): product group i+j+1.
  constexpr int kProduct = 2 * kGroups;
  uint64_t columns[kProduct] = {};
  for (int i = 0; i < kGroups; ++i) {
    for (int j = 0; j < kGroups; ++j)
      columns[i + j + 1] += static_cast<uint64_t>(x[i]) * y[j];
  }
  uint8_t product[kProduct * kGroupDigits];
  uint64_t carry = 0;
  for (int i = kProduct - 1; i >= 0; --i) {
    uint64_t column = columns[i] + carry;
    uint32_t group = static_cast<uint32_t>(column % kGroupBase);
    carry = column / kGroupBase;
    for (int d = kGroupDigits - 1; d >= 0; --d) {
      product[i * kGroupDigits + d] = static_cast<uint8_t>(group % 10);
      group /= 10;
    }
  }
  return StoreDecimal(left.negative != right.negative, left.exponent + right.exponent, product,
                      kProduct * kGroupDigits, true, a);
}

uint32_t DivideDecimal(DecimalNumber* a, const DecimalNumber& b) {
  if (IsDecimalZero(b)) return kMathDivideByZero;
  if (IsDecimalZero(*a)) return kMathOk;
  DecimalParts left;
  DecimalParts right;
  UnpackDecimal(*a, &left);
  UnpackDecimal(b, &right);
  // Long division one decimal digit at a time, over four-digit groups with a spare group on top.
  // 0.L / 0.R lies between 0.1 and 10, so the first quotient digit is the units digit; two more
  // than 28 leave one to round on even when the first is 0.
  constexpr int kWidth = 1 + kGroups;
  constexpr int kQuotient = kDecimalDigits + 2;
  uint32_t remainder[kWidth] = {};
  uint32_t divisor[kWidth] = {};
  ToGroups(left.digits, remainder + 1);
  ToGroups(right.digits, divisor + 1);
  uint8_t quotient[kQuotient];
  for (int q = 0; q < kQuotient; ++q) {
    uint8_t count = 0;
    while (GroupsAtLeast(remainder, divisor, kWidth)) {
      SubtractGroups(remainder, divisor, kWidth);
      ++count;
    }
    quotient[q] = count;
    uint32_t carry = 0;
    for (int i = kWidth - 1; i >= 0; --i) {
      uint32_t value = remainder[i] * 10 + carry;
      remainder[i] = value % kGroupBase;
      carry = value / kGroupBase;
    }
  }
  return StoreDecimal(left.negative != right.negative, left.exponent - right.exponent + 1, quotient,
                      kQuotient, true, a);
}

namespace {

// r <- r * x on mantissas of N four-digit groups, rounded half up on the digit after the last as
// MultiplyDecimal rounds on its 29th: with N = kGroups this is one step of the repeated product,
// digit for digit. Both mantissas are normalised (r[0] >= 1000), so the product has at most one
// leading zero digit. r and x may be the same array. Returns false when the exponent leaves its
// range.
template <int N>
bool MultiplyGroups(uint32_t* r, int* exponent, const uint32_t* x, int xExponent) {
  constexpr int kProduct = 2 * N;
  uint64_t columns[kProduct] = {};
  for (int i = 0; i < N; ++i) {
    for (int j = 0; j < N; ++j)
      columns[i + j + 1] += static_cast<uint64_t>(r[i]) * x[j];
  }
  uint32_t p[kProduct];
  uint64_t carry = 0;
  for (int i = kProduct - 1; i >= 0; --i) {
    uint64_t column = columns[i] + carry;
    p[i] = static_cast<uint32_t>(column % kGroupBase);
    carry = column / kGroupBase;
  }
  int e = *exponent + xExponent;
  uint32_t roundDigit;
  if (p[0] >= kGroupBase / 10) {
    for (int i = 0; i < N; ++i)
      r[i] = p[i];
    roundDigit = p[N] / 1000;
  } else {
    for (int i = 0; i < N; ++i)
      r[i] = p[i] % 1000 * 10 + p[i + 1] / 1000;
    roundDigit = p[N] / 100 % 10;
    --e;
  }
  if (roundDigit >= 5) {
    int i = N - 1;
    for (; i >= 0 && r[i] == kGroupBase - 1; --i)
      r[i] = 0;
    if (i >= 0) {
      ++r[i];
    } else {
      r[0] = kGroupBase / 10;
      ++e;
    }
  }
  if (e < kDecimalMinExponent || e > kDecimalMaxExponent) return false;
  *exponent = e;
  return true;
}

// The value of `count` groups as a DecimalNumber, rounded half up to 28 digits.
uint32_t StoreGroups(bool negative, int exponent, const uint32_t* groups, int count,
                     DecimalNumber* out) {
  uint8_t digits[2 * kDecimalDigits];
  for (int i = 0; i < count; ++i) {
    uint32_t group = groups[i];
    for (int d = kGroupDigits - 1; d >= 0; --d) {
      digits[i * kGroupDigits + d] = static_cast<uint8_t>(group % 10);
      group /= 10;
    }
  }
  return StoreDecimal(negative, exponent, digits, count * kGroupDigits, true, out);
}

// x^n as x multiplied by itself n - 1 times, digit for digit what that many MultiplyDecimal calls
// give, without packing and unpacking the digits at every step.
uint32_t RepeatedPower(DecimalNumber* a, int32_t power) {
  DecimalParts base;
  UnpackDecimal(*a, &base);
  uint32_t x[kGroups];
  ToGroups(base.digits, x);
  uint32_t r[kGroups];
  for (int i = 0; i < kGroups; ++i)
    r[i] = x[i];
  int exponent = base.exponent;
  for (int32_t i = 1; i < power; ++i) {
    if (!MultiplyGroups<kGroups>(r, &exponent, x, base.exponent)) return kMathUnsupported;
  }
  bool negative = base.negative && power % 2 != 0;
  if (StoreGroups(negative, exponent, r, kGroups, a) != kMathOk) return kMathUnsupported;
  return kMathOk;
}

// x^n by squaring: about 2 log2(n) multiplications on 56-digit mantissas, rounded to 28 digits at
// the end, so the result is nearly the true power rather than the repeated product's. A square or
// product that leaves the range means the whole power does (each is at most |x^n| when |x| > 1,
// at least it when |x| < 1).
uint32_t PowerBySquaring(DecimalNumber* a, uint32_t power) {
  constexpr int kWide = 2 * kGroups;
  DecimalParts base;
  UnpackDecimal(*a, &base);
  uint32_t square[kWide] = {};
  ToGroups(base.digits, square);
  int squareExponent = base.exponent;
  uint32_t result[kWide] = {kGroupBase / 10};  // 0.1 x 10^1
  int resultExponent = 1;
  bool negative = base.negative && power % 2 != 0;
  while (power != 0) {
    if ((power & 1) && !MultiplyGroups<kWide>(result, &resultExponent, square, squareExponent)) {
      return kMathUnsupported;
    }
    power >>= 1;
    if (power != 0 && !MultiplyGroups<kWide>(square, &squareExponent, square, squareExponent))
      return kMathUnsupported;
  }
  if (StoreGroups(negative, resultExponent, result, kWide, a) != kMathOk) return kMathUnsupported;
  return kMathOk;
}

}  // namespace

uint32_t PowerDecimalWithin(DecimalNumber* a, const DecimalNumber& b, int* stepsLeft) {
  if (IsDecimalNegative(b)) return kMathUnsupported;
  DecimalNumber whole = b;
  TruncateDecimal(&whole);
  if (CompareDecimal(whole, b) != 0) return kMathUnsupported;
  bool overflow = false;
  int32_t power = DecimalToInt(b, &overflow);
  if (overflow) return kMathUnsupported;
  if (power == 0) {
    *a = kDecimalOne;
    return kMathOk;
  }
  // 0, 1 and -1 multiply to themselves (up to the sign) without ever overflowing: answered at
  // once, with the same result the multiplications would give.
  DecimalNumber magnitude = *a;
  AbsDecimal(&magnitude);
  if (IsDecimalZero(*a) || CompareDecimal(magnitude, kDecimalOne) == 0) {
    if (power % 2 == 0) *a = magnitude;
    return kMathOk;
  }
  int steps = power - 1;
  if (steps <= *stepsLeft) {
    *stepsLeft -= steps;
    return RepeatedPower(a, power);
  }
  return PowerBySquaring(a, static_cast<uint32_t>(power));
}

uint32_t PowerDecimal(DecimalNumber* a, const DecimalNumber& b) {
  int steps = kDecimalPowerSteps;
  return PowerDecimalWithin(a, b, &steps);
}
