// The C integer literal reader of the integer evaluator, also used by the error lookup and the
// binary-to-source skip count.
#pragma once
#include <cstdint>

// After blanks: an optional sign; without a sign "0x" selects hexadecimal and a leading '0'
// octal, otherwise (and always after a sign) decimal. Digits wrap at 32 bits and stop at the first
// byte that is not a digit of the base. Returns the position after the last digit, or null when
// no digit was read (the value is then 0).
const char* ParseMathNumber(const char* text, int32_t* value);
