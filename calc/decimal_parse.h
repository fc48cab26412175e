// The literal reader of the real calculators.
#pragma once
#include <cstdint>

#include "calc/decimal_number.h"

// Reads one literal at *cursor (no sign, no blanks) into `out` and moves the cursor past it:
// 'c' (1 to 12 bytes), 0x... and 0b... (96-bit two's complement, ',' ignored), @a to @j, e, pi,
// mm and mil (0.0254), or a decimal number with ',' ignored, one '.' and an exponent. Letters
// in any case. Forgets the register read last, and records it when the literal is one. Returns 0,
// kMathSyntax, kMathOutOfRange or kMathBadVariable.
uint32_t ParseDecimalNumber(const char** cursor, DecimalNumber* out);
