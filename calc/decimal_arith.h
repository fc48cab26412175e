// The four operations and the integer power of decimal numbers: a <- a op b, returning an error
// code of the math message table (0 when it went well; on error `a` keeps its value).
#pragma once
#include <cstdint>

#include "calc/decimal_number.h"

// x^n multiplies x by itself n - 1 times, so a large n of a number near 1 (which neither
// overflows nor underflows) would run for a long time. One evaluation of the calculator may spend
// this many multiplications on powers in all; beyond it the power answers kMathUnsupported, as an
// overflowing one does. At about a microsecond a multiplication this keeps an input well inside
// its 100 ms even under the sanitizers.
constexpr int kDecimalPowerSteps = 20000;

uint32_t AddDecimal(DecimalNumber* a, const DecimalNumber& b);
// Adds b with its sign flipped.
uint32_t SubtractDecimal(DecimalNumber* a, const DecimalNumber& b);
// A result beyond the exponent's range gives kMathOutOfRange.
uint32_t MultiplyDecimal(DecimalNumber* a, const DecimalNumber& b);
// A zero divisor gives kMathDivideByZero.
uint32_t DivideDecimal(DecimalNumber* a, const DecimalNumber& b);
// b must be a non-negative integer of 32 bits, else kMathUnsupported; an overflow on the way also
// gives kMathUnsupported. Spends from its own budget of kDecimalPowerSteps.
uint32_t PowerDecimal(DecimalNumber* a, const DecimalNumber& b);
// The same, spending from `stepsLeft`, the budget of a whole evaluation.
uint32_t PowerDecimalWithin(DecimalNumber* a, const DecimalNumber& b, int* stepsLeft);
