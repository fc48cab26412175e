// Decimal arithmetic against Python's decimal module (tests/calc/gen_decimal_vectors.py), and the
// accuracy the sine and arc tangent polynomials reach.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "calc/decimal_arith.h"
#include "calc/decimal_functions.h"
#include "calc/decimal_number.h"
#include "calc/math_expression.h"

namespace {

struct Vector {
  char op;
  const char* a;
  const char* b;
  const char* result;
};

const Vector kVectors[] = {
#include "tests/calc/decimal_vectors.inc"
};

// "[-]DIGITSeEXP", 0.DIGITS x 10^EXP, packed by hand so that the parser is not involved.
DecimalNumber Make(const char* text) {
  DecimalNumber value{};
  if (strcmp(text, "0") == 0) return value;
  bool negative = *text == '-';
  if (negative) ++text;
  int count = 0;
  for (; *text != 'e'; ++text, ++count) {
    int digit = *text - '0';
    value.mantissa[count / 2] |= static_cast<uint8_t>(count % 2 ? digit : digit << 4);
  }
  int exponent = atoi(text + 1);
  value.signExponent = static_cast<uint16_t>((exponent & 0x7FFF) | (negative ? 0x8000 : 0));
  return value;
}

// A value as a sign and 28 digits scaled by 10^scale.
struct Scaled {
  bool negative;
  std::string digits;  // most significant first
  int scale;
};

Scaled ToScaled(const DecimalNumber& value) {
  DecimalParts parts;
  UnpackDecimal(value, &parts);
  Scaled scaled{parts.negative, std::string(), parts.exponent - kDecimalDigits};
  for (uint8_t digit : parts.digits)
    scaled.digits += static_cast<char>('0' + digit);
  if (IsDecimalZero(value)) scaled.scale = -100000;
  return scaled;
}

// |a - b| as digits at the scale of the smaller one (digit strings, no binary arithmetic).
std::string Difference(Scaled a, Scaled b, int* scale) {
  int low = std::min(a.scale, b.scale);
  auto widen = [&](Scaled* s) {
    if (s->scale == -100000)
      s->digits = "0";
    else
      s->digits.append(static_cast<size_t>(s->scale - low), '0');
  };
  widen(&a);
  widen(&b);
  size_t width = std::max(a.digits.size(), b.digits.size()) + 1;
  a.digits.insert(0, width - a.digits.size(), '0');
  b.digits.insert(0, width - b.digits.size(), '0');
  if (a.negative != b.negative) {
    std::string sum(width, '0');
    int carry = 0;
    for (size_t i = width; i-- > 0;) {
      int d = (a.digits[i] - '0') + (b.digits[i] - '0') + carry;
      carry = d / 10;
      sum[i] = static_cast<char>('0' + d % 10);
    }
    *scale = low;
    return sum.substr(std::min(sum.find_first_not_of('0'), sum.size() - 1));
  }
  if (a.digits < b.digits) std::swap(a, b);
  std::string diff(width, '0');
  int borrow = 0;
  for (size_t i = width; i-- > 0;) {
    int d = (a.digits[i] - '0') - (b.digits[i] - '0') - borrow;
    borrow = d < 0;
    diff[i] = static_cast<char>('0' + (d + 10) % 10);
  }
  *scale = low;
  return diff.substr(std::min(diff.find_first_not_of('0'), diff.size() - 1));
}

// log10 of |a - b| (roughly), or -100000 when they are equal.
double ErrorLog10(const DecimalNumber& expected, const DecimalNumber& actual) {
  int scale = 0;
  std::string diff = Difference(ToScaled(expected), ToScaled(actual), &scale);
  if (diff == "0") return -100000;
  std::string lead = diff.substr(0, 6);
  return std::log10(std::stod(lead)) + static_cast<double>(diff.size() - lead.size()) + scale;
}

// True when actual is within `units` units of expected's 28th digit.
bool WithinUnits(const DecimalNumber& expected, const DecimalNumber& actual, int units) {
  int scale = 0;
  std::string diff = Difference(ToScaled(expected), ToScaled(actual), &scale);
  if (diff == "0") return true;
  if (IsDecimalZero(expected)) return false;
  return diff.size() == 1 && diff[0] - '0' <= units && scale == ToScaled(expected).scale;
}

TEST(DecimalArith, AgreesWithPythonsDecimalButForTheLastDigit) {
  int checked = 0;
  for (const Vector& v : kVectors) {
    if (!strchr("+-*/r", v.op)) continue;
    DecimalNumber a = Make(v.a);
    uint32_t error = kMathOk;
    switch (v.op) {
      case '+':
        error = AddDecimal(&a, Make(v.b));
        break;
      case '-':
        error = SubtractDecimal(&a, Make(v.b));
        break;
      case '*':
        error = MultiplyDecimal(&a, Make(v.b));
        break;
      case '/':
        error = DivideDecimal(&a, Make(v.b));
        break;
      case 'r':
        error = SqrtDecimal(&a);
        break;
    }
    ASSERT_EQ(error, kMathOk) << v.a << ' ' << v.op << ' ' << v.b;
    // The square root's halvings round, so its fixed point may sit two units off.
    EXPECT_TRUE(WithinUnits(Make(v.result), a, v.op == 'r' ? 2 : 1))
        << v.a << ' ' << v.op << ' ' << v.b << " = " << v.result << ", got " << ToScaled(a).digits
        << "e" << ToScaled(a).scale + kDecimalDigits;
    ++checked;
  }
  EXPECT_GT(checked, 900);
}

// Measured accuracy. The sine polynomial is Taylor's to degree 19 except that its innermost
// coefficient is a tenth of Taylor's (-0.0012 for -0.0120): the error grows as f^19 to about
// 4e-14 (10^-13.4) at a quarter turn, so sine, cosine and tangent are good to 13 digits. The arc
// tangent's short coefficients still fit its reduced range to about 4e-16 (10^-15.4).
TEST(DecimalFunctions, AccuracyOfThePolynomials) {
  double worst[128] = {};
  std::fill(std::begin(worst), std::end(worst), -100000.0);
  for (const Vector& v : kVectors) {
    if (!strchr("scta", v.op)) continue;
    DecimalNumber x = Make(v.a);
    uint32_t error = kMathOk;
    if (v.op == 's') error = SinDecimal(&x);
    if (v.op == 'c') error = CosDecimal(&x);
    if (v.op == 't') error = TanDecimal(&x);
    if (v.op == 'a') error = ATanDecimal(&x);
    ASSERT_EQ(error, kMathOk) << v.op << ' ' << v.a;
    DecimalNumber expected = Make(v.result);
    double e = ErrorLog10(expected, x);
    // Tangent errors scale with the value: measured relative to it.
    if (v.op == 't' && !IsDecimalZero(expected)) e -= std::max(0, DecimalExponent(expected));
    worst[static_cast<int>(v.op)] = std::max(worst[static_cast<int>(v.op)], e);
  }
  EXPECT_LT(worst['s'], -13.3);
  EXPECT_LT(worst['c'], -13.3);
  EXPECT_LT(worst['t'], -13.3);  // relative
  EXPECT_LT(worst['a'], -15.0);
  // And no better, or the coefficients were changed.
  EXPECT_GT(worst['s'], -13.6);
  EXPECT_GT(worst['a'], -16.0);
}

TEST(DecimalFunctions, SineFoldsAndKeepsItsSign) {
  DecimalNumber x = kDecimalZero;
  EXPECT_EQ(SinDecimal(&x), kMathOk);
  EXPECT_TRUE(IsDecimalZero(x));
  // cos(0) works on a quarter turn: the polynomial's error at its edge shows.
  x = kDecimalZero;
  EXPECT_EQ(CosDecimal(&x), kMathOk);
  EXPECT_EQ(ToScaled(x).digits, "1000000000000039137695677692");
  DecimalNumber minus = Make("-1e1");
  DecimalNumber plus = Make("1e1");
  SinDecimal(&minus);
  SinDecimal(&plus);
  NegateDecimal(&minus);
  EXPECT_EQ(CompareDecimal(minus, plus), 0);
  // Huge arguments have no fraction of a turn left.
  x = Make("1e40");
  EXPECT_EQ(SinDecimal(&x), kMathOk);
  EXPECT_TRUE(IsDecimalZero(x));
}

TEST(DecimalFunctions, SquareRootAndArcTangentEdges) {
  DecimalNumber x = Make("-4e1");
  EXPECT_EQ(SqrtDecimal(&x), kMathOverflow);
  EXPECT_EQ(CompareDecimal(x, Make("-4e1")), 0);
  x = kDecimalZero;
  EXPECT_EQ(SqrtDecimal(&x), kMathOk);
  EXPECT_TRUE(IsDecimalZero(x));
  x = Make("4e1");
  EXPECT_EQ(SqrtDecimal(&x), kMathOk);
  EXPECT_EQ(CompareDecimal(x, Make("2e1")), 0);
  x = kDecimalZero;
  EXPECT_EQ(ATanDecimal(&x), kMathOk);
  EXPECT_TRUE(IsDecimalZero(x));
  x = Make("-1e1");
  EXPECT_EQ(ATanDecimal(&x), kMathOk);
  EXPECT_TRUE(IsDecimalNegative(x));
  EXPECT_LT(ErrorLog10(Make("-7853981633974483096156608458e0"), x), -11);
}

TEST(DecimalArith, RangeAndDivisionErrorsLeaveTheOperand) {
  DecimalNumber a = Make("5e16383");
  EXPECT_EQ(MultiplyDecimal(&a, Make("5e16383")), kMathOutOfRange);
  EXPECT_EQ(CompareDecimal(a, Make("5e16383")), 0);
  EXPECT_EQ(AddDecimal(&a, Make("5e16383")), kMathOutOfRange);
  a = Make("1e-16384");
  EXPECT_EQ(DivideDecimal(&a, Make("1e10")), kMathOutOfRange);
  EXPECT_EQ(DivideDecimal(&a, kDecimalZero), kMathDivideByZero);
  EXPECT_EQ(CompareDecimal(a, Make("1e-16384")), 0);
  // An exact cancellation is the true zero of sixteen zero bytes.
  a = Make("123e5");
  EXPECT_EQ(SubtractDecimal(&a, Make("123e5")), kMathOk);
  EXPECT_EQ(memcmp(&a, &kDecimalZero, sizeof a), 0);
}

TEST(DecimalArith, PowerTakesOnlyNonNegativeWholeExponents) {
  DecimalNumber a = Make("2e1");
  EXPECT_EQ(PowerDecimal(&a, Make("5e0")), kMathUnsupported);   // 2^0.5
  EXPECT_EQ(PowerDecimal(&a, Make("-1e1")), kMathUnsupported);  // 2^-1
  EXPECT_EQ(PowerDecimal(&a, Make("15e1")), kMathUnsupported);  // 2^1.5
  EXPECT_EQ(PowerDecimal(&a, Make("3e10")), kMathUnsupported);  // beyond 32 bits
  EXPECT_EQ(CompareDecimal(a, Make("2e1")), 0);
  EXPECT_EQ(PowerDecimal(&a, Make("1e2")), kMathOk);
  EXPECT_EQ(CompareDecimal(a, Make("1024e4")), 0);
  a = kDecimalZero;
  EXPECT_EQ(PowerDecimal(&a, kDecimalZero), kMathOk);  // 0^0 is 1
  EXPECT_EQ(CompareDecimal(a, kDecimalOne), 0);
  a = Make("-1e1");
  EXPECT_EQ(PowerDecimal(&a, Make("2147483647e10")), kMathOk);
  EXPECT_EQ(CompareDecimal(a, Make("-1e1")), 0);
  a = Make("2e1");
  EXPECT_EQ(PowerDecimal(&a, Make("6e5")), kMathUnsupported);  // overflows on the way
}

// The repeated product keeps its digits on four-digit groups between the steps: it must round
// exactly as that many MultiplyDecimal calls do, including a carry through every digit.
TEST(DecimalArith, RepeatedPowerIsMultiplicationStepByStep) {
  struct Case {
    const char* base;
    int power;
  };
  const Case kCases[] = {
      {"10001e1", 1000},                      // 1.0001
      {"9999999999999999999999999999e1", 2},  // 9.99...9: rounds up to 100
      {"9999999999999999999999999999e1", 7},
      {"9999999999999999999999999999e0", 500},  // 0.99...9: a leading zero digit each step
      {"-3333333333333333333333333333e1", 41},  // odd power of a negative number
      {"7e1", 40},                              // exact, then rounded
      {"1234567890123456789012345678e0", 120},
      {"-5e-3", 4},
  };
  for (const Case& c : kCases) {
    DecimalNumber expected = Make(c.base);
    for (int i = 1; i < c.power; ++i)
      ASSERT_EQ(MultiplyDecimal(&expected, Make(c.base)), kMathOk);
    DecimalNumber a = Make(c.base);
    int steps = kDecimalPowerSteps;
    std::string power = std::to_string(c.power);
    EXPECT_EQ(PowerDecimalWithin(&a, DecimalConstant(power.c_str()), &steps), kMathOk)
        << c.base << "^" << c.power;
    EXPECT_EQ(memcmp(&a, &expected, sizeof a), 0) << c.base << "^" << c.power;
    EXPECT_EQ(steps, kDecimalPowerSteps - (c.power - 1));
  }
}

// Powers of numbers near 1 stay in range for very large exponents: past the evaluation's budget
// of repeated multiplications they are computed by squaring; only a result that really leaves the
// range is refused. References from Python's decimal module at 28 digits.
TEST(DecimalArith, LargePowersGiveTheirValueUnlessTheResultOverflows) {
  struct Case {
    const char* base;
    const char* power;
    int budget;
    const char* expected;  // nullptr: kMathUnsupported
    int digits;            // how many leading digits must agree
  };
  const Case kCases[] = {
      {"10001e1", "3e5", kDecimalPowerSteps, "2008252451941036578736548967e2", 25},
      {"100001e1", "1e6", kDecimalPowerSteps, "2718268237174489668035064824e1", 24},
      {"10001e1", "3e5", 20000, "2008252451941036578736548967e2", 28},  // by squaring
      {"10001e1", "3e9", 0, "1524259115450206862530133190e13029", 28},
      {"1000000000000000000000000001e1", "2147483647e10", 0, "1000000000000000002147483647e1", 28},
      {"5e0", "3e5", 0, "1259302543584091457291530785e-9030", 28},
      {"10001e1", "2147483647e10", 0, nullptr, 0},
      {"-9999999e0", "2147483647e10", 0, "-5444594621971168588521608009e-93", 28},  // odd
      {"9999e0", "2147483647e10", 0, nullptr, 0},                                   // underflows
      {"5e0", "6e5", kDecimalPowerSteps, nullptr, 0},
      {"2e1", "6e5", kDecimalPowerSteps, nullptr, 0},
  };
  for (const Case& c : kCases) {
    DecimalNumber a = Make(c.base);
    int steps = c.budget;
    uint32_t error = PowerDecimalWithin(&a, Make(c.power), &steps);
    SCOPED_TRACE(std::string(c.base) + "^" + c.power);
    if (!c.expected) {
      EXPECT_EQ(error, kMathUnsupported);
      continue;
    }
    ASSERT_EQ(error, kMathOk);
    DecimalNumber difference = a;
    ASSERT_EQ(SubtractDecimal(&difference, Make(c.expected)), kMathOk);
    if (!IsDecimalZero(difference)) {
      EXPECT_LE(DecimalExponent(difference), DecimalExponent(Make(c.expected)) - c.digits);
    }
  }
}

TEST(DecimalNumber, TruncateAndToInt) {
  DecimalNumber x = Make("-12345e3");  // -123.45
  TruncateDecimal(&x);
  EXPECT_EQ(CompareDecimal(x, Make("-123e3")), 0);
  x = Make("5e0");
  TruncateDecimal(&x);
  EXPECT_TRUE(IsDecimalZero(x));
  bool overflow = true;
  EXPECT_EQ(DecimalToInt(Make("-2147483648e10"), &overflow), INT32_MIN);
  EXPECT_FALSE(overflow);
  EXPECT_EQ(DecimalToInt(Make("2147483648e10"), &overflow), 0);
  EXPECT_TRUE(overflow);
  EXPECT_EQ(DecimalToInt(Make("99999e3"), &overflow), 999);
  EXPECT_EQ(DecimalToInt(Make("1e11"), &overflow), 0);
  EXPECT_TRUE(overflow);
}

}  // namespace
