// The result text of the real calculators.
#pragma once

#include "calc/decimal_number.h"

// "= " and the value: integer digits grouped by ',', small values in engineering form ("500e-3"),
// then for a value with an integer part its 112-bit hexadecimal (two's complement too when
// negative), binary when the binary-output flag is on, and its bytes as characters when any is
// printable. Lines end in "\r\n"; the text is cut to the buffer.
void FormatDecimalResult(char* buffer, int size, const DecimalNumber& value);
