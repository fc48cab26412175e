// The four operations and the integer power of decimal numbers: a <- a op b, returning an error
// code of the math message table (0 when it went well; on error `a` keeps its value).
#pragma once
#include <cstdint>

#include "calc/decimal_number.h"

// x^n multiplies x by itself n - 1 times, and a number near 1 raised to a large n neither
// overflows nor underflows: 1.0001^300000000 is still in range. One evaluation of the calculator
// spends at most this many multiplications on such repeated products in all; a power beyond what
// is left is computed by squaring (its last digits may differ from the repeated product's).
constexpr int kDecimalPowerSteps = 100000;

uint32_t AddDecimal(DecimalNumber* a, const DecimalNumber& b);
// Adds b with its sign flipped.
uint32_t SubtractDecimal(DecimalNumber* a, const DecimalNumber& b);
// A result beyond the exponent's range gives kMathOutOfRange.
uint32_t MultiplyDecimal(DecimalNumber* a, const DecimalNumber& b);
// A zero divisor gives kMathDivideByZero.
uint32_t DivideDecimal(DecimalNumber* a, const DecimalNumber& b);
// b must be a non-negative integer of 32 bits, else kMathUnsupported; an overflow or underflow on
// the way also gives kMathUnsupported. Spends from its own budget of kDecimalPowerSteps.
uint32_t PowerDecimal(DecimalNumber* a, const DecimalNumber& b);
// The same, spending from `stepsLeft`, the budget of a whole evaluation.
uint32_t PowerDecimalWithin(DecimalNumber* a, const DecimalNumber& b, int* stepsLeft);
