// Square root, sine, cosine, tangent and arc tangent of decimal numbers, in place (radians);
// each returns an error code of the math message table.
#pragma once
#include <cstdint>

#include "calc/decimal_number.h"

// A negative argument gives kMathOverflow ("cannot compute").
uint32_t SqrtDecimal(DecimalNumber* x);
uint32_t SinDecimal(DecimalNumber* x);
uint32_t CosDecimal(DecimalNumber* x);
// A cosine of zero gives kMathOutOfRange.
uint32_t TanDecimal(DecimalNumber* x);
uint32_t ATanDecimal(DecimalNumber* x);
