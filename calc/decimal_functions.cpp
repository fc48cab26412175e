#include "calc/decimal_functions.h"

#include "calc/decimal_arith.h"
#include "calc/math_expression.h"

namespace {

constexpr int kNewtonSteps = 14;

// sin(2 pi f) = f P(f^2) for |f| <= 1/4, Horner's rule from the first.
constexpr DecimalNumber kSineCoefficients[] = {
    DecimalConstant("-0.001203158594212062723320256782"),
    DecimalConstant("0.1042291622081398411727104488"),
    DecimalConstant("-0.7181223017785005122317402775"),
    DecimalConstant("3.819952584848282127733792063"),
    DecimalConstant("-15.09464257682299039182661622"),
    DecimalConstant("42.05869394489765314498681112"),
    DecimalConstant("-76.70585975306138584163064107"),
    DecimalConstant("81.60524927607505420339768267"),
    DecimalConstant("-41.34170224039976023396842008"),
    DecimalConstant("6.283185307179586476925286766"),
};

// atan(x) = x Q(x^2) for |x| <= tan 15 degrees.
constexpr DecimalNumber kArcTangentCoefficients[] = {
    DecimalConstant("-0.05208693904"),    DecimalConstant("0.0753071491348"),
    DecimalConstant("-0.09081343224705"), DecimalConstant("0.11110794184029"),
    DecimalConstant("-0.14285708554884"), DecimalConstant("0.19999999948967"),
    DecimalConstant("-0.3333333333316"),  DecimalConstant("1"),
};

// x * P(x^2) by Horner's rule over `count` coefficients.
uint32_t OddPolynomial(DecimalNumber* x, const DecimalNumber* coefficients, int count) {
  DecimalNumber square = *x;
  uint32_t error = MultiplyDecimal(&square, *x);
  DecimalNumber sum = coefficients[0];
  for (int i = 1; i < count && error == kMathOk; ++i) {
    error = MultiplyDecimal(&sum, square);
    if (error == kMathOk) error = AddDecimal(&sum, coefficients[i]);
  }
  if (error == kMathOk) error = MultiplyDecimal(x, sum);
  return error;
}

// The sine of 2 pi t for t in turns.
uint32_t SineOfTurns(DecimalNumber* t) {
  bool negative = IsDecimalNegative(*t);
  AbsDecimal(t);
  DecimalNumber whole = *t;
  TruncateDecimal(&whole);
  uint32_t error = SubtractDecimal(t, whole);
  // Fold the fraction into [-1/4, 1/4] by the first digit pair when it is 0.1 or more.
  if (error == kMathOk && !IsDecimalZero(*t) && DecimalExponent(*t) == 0) {
    uint8_t pair = t->mantissa[0];
    if (pair >= 0x75) {
      error = SubtractDecimal(t, kDecimalOne);
    } else if (pair >= 0x25) {
      DecimalNumber folded = kDecimalHalf;
      error = SubtractDecimal(&folded, *t);
      *t = folded;
    }
  }
  if (error == kMathOk) error = OddPolynomial(t, kSineCoefficients, 10);
  if (negative) NegateDecimal(t);
  return error;
}

uint32_t SineOrCosine(DecimalNumber* x, bool cosine) {
  DecimalNumber t = *x;
  uint32_t error = MultiplyDecimal(&t, kDecimalInverseTwoPi);
  if (error == kMathOk && cosine) {
    // cos(2 pi t) = sin(2 pi (1/4 - |t|)).
    AbsDecimal(&t);
    DecimalNumber shifted = kDecimalQuarter;
    error = SubtractDecimal(&shifted, t);
    t = shifted;
  }
  if (error == kMathOk) error = SineOfTurns(&t);
  if (error == kMathOk) *x = t;
  return error;
}

// The arc tangent of 0 <= x < 1.
uint32_t InnerArcTangent(DecimalNumber* x) {
  if (CompareDecimal(*x, kDecimalTan15) < 0) return OddPolynomial(x, kArcTangentCoefficients, 8);
  // atan x = pi/6 + atan((x sqrt3 - 1) / (x + sqrt3)), the argument now within tan 15 degrees.
  DecimalNumber numerator = *x;
  uint32_t error = MultiplyDecimal(&numerator, kDecimalSqrt3);
  if (error == kMathOk) error = SubtractDecimal(&numerator, kDecimalOne);
  DecimalNumber denominator = *x;
  if (error == kMathOk) error = AddDecimal(&denominator, kDecimalSqrt3);
  if (error == kMathOk) error = DivideDecimal(&numerator, denominator);
  if (error == kMathOk) error = OddPolynomial(&numerator, kArcTangentCoefficients, 8);
  if (error == kMathOk) error = AddDecimal(&numerator, kDecimalSixthPi);
  if (error == kMathOk) *x = numerator;
  return error;
}

}  // namespace

uint32_t SqrtDecimal(DecimalNumber* x) {
  if (IsDecimalNegative(*x)) return kMathOverflow;
  // Newton's steps from a zero start would only halve it: the root of zero is zero.
  if (IsDecimalZero(*x)) return kMathOk;
  // Start: half the exponent, the first digit pair divided by four (kept to digits) plus 1 in
  // the first digit, so the start is never zero.
  DecimalNumber guess = *x;
  int exponent = DecimalExponent(*x) / 2;
  guess.signExponent = static_cast<uint16_t>(exponent & 0x7FFF);
  guess.mantissa[0] = static_cast<uint8_t>(((x->mantissa[0] / 4) & 0x77) + 0x10);
  uint32_t error = kMathOk;
  for (int step = 0; step < kNewtonSteps && error == kMathOk; ++step) {
    DecimalNumber quotient = *x;
    error = DivideDecimal(&quotient, guess);
    if (error == kMathOk) error = AddDecimal(&quotient, guess);
    if (error == kMathOk) error = MultiplyDecimal(&quotient, kDecimalHalf);
    if (error == kMathOk) guess = quotient;
  }
  if (error == kMathOk) *x = guess;
  return error;
}

uint32_t SinDecimal(DecimalNumber* x) {
  return SineOrCosine(x, false);
}

uint32_t CosDecimal(DecimalNumber* x) {
  return SineOrCosine(x, true);
}

uint32_t TanDecimal(DecimalNumber* x) {
  DecimalNumber sine = *x;
  DecimalNumber cosine = *x;
  uint32_t error = SinDecimal(&sine);
  if (error == kMathOk) error = CosDecimal(&cosine);
  if (error != kMathOk) return error;
  if (IsDecimalZero(cosine)) return kMathOutOfRange;
  error = DivideDecimal(&sine, cosine);
  if (error == kMathOk) *x = sine;
  return error;
}

uint32_t ATanDecimal(DecimalNumber* x) {
  if (IsDecimalZero(*x)) return kMathOk;
  bool negative = IsDecimalNegative(*x);
  DecimalNumber value = *x;
  AbsDecimal(&value);
  uint32_t error;
  if (DecimalExponent(value) >= 1) {
    // |x| >= 1: pi/2 - atan(1/|x|).
    DecimalNumber inverse = kDecimalOne;
    error = DivideDecimal(&inverse, value);
    if (error == kMathOk) error = InnerArcTangent(&inverse);
    value = kDecimalHalfPi;
    if (error == kMathOk) error = SubtractDecimal(&value, inverse);
  } else {
    error = InnerArcTangent(&value);
  }
  if (error != kMathOk) return error;
  if (negative) NegateDecimal(&value);
  *x = value;
  return kMathOk;
}
